#include "gui/TORVPictureJob.h"

#include "utils/TORVLog.h"

#include <QDirIterator>

#include <cassert>

namespace
{

bool isReflectivityVolume(const TORVFile& file)
{
    return file.isValid() && file.getDimensions() == 3 && file.getConfiguration() == QLatin1String("Z");
}

} // namespace

TORVPictureJob::TORVPictureJob(QObject* parent) : QObject(parent) {}

TORVPictureJob::~TORVPictureJob()
{
    _abort = true;
    if (_thread) {
        _thread->wait();
    }
}

void TORVPictureJob::start(const QString& directory)
{
    run([this, directory] { return newestVolume(directory); });
}

void TORVPictureJob::start(const TORVFile::CPtr& file)
{
    run([file] { return file; });
}

void TORVPictureJob::run(std::function<TORVFile::CPtr()> choose)
{
    assert(!_thread);
    _thread.reset(QThread::create([this, choose = std::move(choose)] {
        const TORVFile::CPtr file = choose();
        if (file && !_abort) {
            TORVLog::Instance()->logDebug(QLatin1String("Reading data: ") + file->getName());
            _scene = TORVProductScene::build(file, TORVProductScene::reflectivitySurfaces());
        }
    }));
    connect(_thread.get(), &QThread::finished, this, &TORVPictureJob::finished);
    _thread->start();
}

bool TORVPictureJob::isBetter(const TORVFile& candidate, const TORVFile::CPtr& best)
{
    if (!isReflectivityVolume(candidate)) {
        return false;
    }
    if (!best || candidate.getDataTime() != best->getDataTime()) {
        return !best || candidate.getDataTime() > best->getDataTime();
    }
    return candidate.getItemCount() > best->getItemCount();
}

TORVFile::CPtr TORVPictureJob::newestVolume(const QString& directory) const
{
    TORVFile::CPtr best;
    QDirIterator entries(directory, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext() && !_abort) {
        const TORVFile::CPtr file = TORVFile::openChecked(entries.next());
        if (isBetter(*file, best)) {
            best = file;
        }
    }
    return best;
}
