#include "gui/TORVPathProbe.h"

#include "utils/TORVApplication.h"
#include "utils/TORVLog.h"

#include <QDir>
#include <QFile>

#include <boost/make_shared.hpp>

#include <sys/stat.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace
{

// A disk that is there has answered by then.
constexpr std::chrono::milliseconds FarewellWait(200);

} // namespace

struct TORVPathProbe::Mailbox
{
    explicit Mailbox(TORVPathProbe* owner) : receiver(owner) {}

    std::mutex mutex;
    std::condition_variable threadEnds;
    TORVPathProbe* receiver; // null when it has gone
    std::vector<Reading> readings;
    int threadCount = 0;
};

TORVPathProbe::TORVPathProbe(QObject* parent, Look look)
    : QObject(parent), _look(std::move(look)), _mailbox(boost::make_shared<Mailbox>(this))
{
    connect(this, &TORVPathProbe::looked, this, &TORVPathProbe::takeReadings, Qt::QueuedConnection);
}

TORVPathProbe::~TORVPathProbe()
{
    std::unique_lock<std::mutex> lock(_mailbox->mutex);
    _mailbox->receiver = nullptr;
    _mailbox->threadEnds.wait_for(lock, FarewellWait, [this] { return _mailbox->threadCount == 0; });
}

void TORVPathProbe::ask(const QString& path)
{
    _newest = path;
    _isAnswered = false;
    if (!_asked.contains(path) && _asked.size() < MostThreads) {
        launch(path);
    }
}

void TORVPathProbe::launch(const QString& path)
{
    const auto work = [look = _look, mailbox = _mailbox, path] {
        const Reading reading = look(path);
        const std::lock_guard<std::mutex> lock(mailbox->mutex);
        if (mailbox->receiver) {
            mailbox->readings.push_back(reading);
            Q_EMIT mailbox->receiver->looked();
        }
        --mailbox->threadCount;
        mailbox->threadEnds.notify_all();
    };
    const std::lock_guard<std::mutex> lock(_mailbox->mutex);
    try {
        std::thread(work).detach();
        ++_mailbox->threadCount;
        _asked.append(path);
    } catch (const std::system_error& error) {
        TORVLog::Instance()->logWarning(QStringLiteral("No thread to look at %1: %2").arg(path, error.what()));
    }
}

void TORVPathProbe::takeReadings()
{
    std::vector<Reading> readings;
    {
        const std::lock_guard<std::mutex> lock(_mailbox->mutex);
        readings.swap(_mailbox->readings);
    }
    for (const Reading& reading : readings) {
        take(reading);
    }
}

void TORVPathProbe::take(const Reading& reading)
{
    _asked.removeOne(reading.path);
    if (_isAnswered) {
        return;
    }
    if (reading.path != _newest) {
        ask(_newest);
        return;
    }
    _isAnswered = true;
    Q_EMIT answered(reading);
}

TORVPathProbe::Reading TORVPathProbe::look(const QString& path)
{
    Reading reading;
    reading.path = path;
    struct stat file = {};
    if (::stat(QFile::encodeName(path).constData(), &file) != 0 || !S_ISDIR(file.st_mode)) {
        return reading;
    }
    reading.isDirectory = true;
    reading.device = file.st_dev;
    TORVApplication::getDiskSpace(path, reading.total_MiB, reading.available_MiB);
    return reading;
}

QString TORVPathProbe::absolutePath(const QString& text)
{
    QString path = text.trimmed();
    if (path.isEmpty()) {
        return {};
    }
    if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/"))) {
        path.replace(0, 1, QDir::homePath());
    }
    return QDir::cleanPath(QDir::current().absoluteFilePath(path));
}
