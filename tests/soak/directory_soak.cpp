// Two watchers beside a radar that writes slow and faulty files: counts what they report and holds it against what lies
// in the directories at the end. usage: soak_directories DATA3D DATA2D SECONDS

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "datalib/TORVDirectoryWatcher.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QSet>
#include <QTextStream>
#include <QTimer>

#include <unistd.h>

namespace
{

constexpr int ReportPeriod_ms = 30000;
constexpr int SettleTime_ms = 15000; // for what was still growing when the time was up

double megabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0.0;
    }
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

QString treeKey(const TORVFile& file)
{
    return QStringList{file.getSite(), file.getProduct(), file.getConfiguration(), file.getTime()}.join(
        QLatin1Char('/'));
}

// One watched directory and what was heard of it.
class Side
{
public:
    Side(const QString& path, TORVDirectoryWatchData::DirectoryType type)
        : _directory(path), _isVolume(type == TORVDirectoryWatchData::DIRECTORY_3D), _atStart(goodPaths()),
          _watcher(path, type)
    {
        QObject::connect(&_watcher, &TORVDirectoryWatcher::newFiles, &_watcher, [this] { drain(); });
    }

    void drain()
    {
        for (QString path = _watcher.getAddedFile(); !path.isEmpty(); path = _watcher.getAddedFile()) {
            ++_added[path];
        }
        for (QString path = _watcher.getRemovedFile(); !path.isEmpty(); path = _watcher.getRemovedFile()) {
            ++_removed[path];
        }
    }

    int added() const { return _added.size(); }

    // Says what is wrong, in numbers; all 0 is right.
    bool judge(QTextStream& out)
    {
        drain();
        const QHash<QString, QStringList> good = goodProducts();
        int unbalanced = 0;
        int bad = 0;
        for (const QString& path : allReported()) {
            // A file that is replaced under its name is reported as removed and added; what remains is there or not.
            const int there = static_cast<int>(_atStart.contains(path)) + _added.value(path) - _removed.value(path);
            unbalanced += there != 0 && there != 1;
            bad += there == 1 && !isGood(good, path);
        }
        int lost = 0;
        for (const QStringList& paths : std::as_const(good)) {
            lost += !_watcher.getTop()->findLeaf(QFileInfo(paths.first()).fileName()) && !anyInTree(paths);
        }
        out << (_isVolume ? "3-D" : "2-D") << ": " << good.size() << " good products in the directory, "
            << _added.size() << " reported as added, " << _removed.size() << " as removed; out of balance "
            << unbalanced << ", bad reported " << bad << ", lost " << lost << '\n';
        return unbalanced == 0 && bad == 0 && lost == 0;
    }

private:
    // By key: of several files with one key any may be in the tree.
    QHash<QString, QStringList> goodProducts() const
    {
        QHash<QString, QStringList> good;
        for (const QString& name : _directory.entryList(QDir::Files | QDir::NoSymLinks)) {
            const TORVFile::CPtr file = TORVFile::openChecked(_directory.absoluteFilePath(name));
            if (file->isValid() && isWanted(*file)) {
                good[treeKey(*file)] << file->getPath();
            }
        }
        return good;
    }

    QSet<QString> goodPaths() const
    {
        QSet<QString> paths;
        for (const QStringList& ofKey : goodProducts()) {
            paths.insert(ofKey.first());
        }
        return paths;
    }

    QSet<QString> allReported() const
    {
        const QStringList paths = _added.keys() + _removed.keys();
        return QSet<QString>(paths.cbegin(), paths.cend());
    }

    bool isWanted(const TORVFile& file) const
    {
        return _isVolume ? file.getProduct() == QLatin1String("CAPPI") && file.getDimensions() == 3
                         : !file.getProduct().isEmpty() && file.getDimensions() == 2;
    }

    static bool isGood(const QHash<QString, QStringList>& good, const QString& path)
    {
        return std::any_of(good.cbegin(), good.cend(),
                           [&path](const QStringList& paths) { return paths.contains(path); });
    }

    bool anyInTree(const QStringList& paths) const
    {
        return std::any_of(paths.cbegin(), paths.cend(), [this](const QString& path) {
            return _watcher.getTop()->findLeaf(QFileInfo(path).fileName()) != nullptr;
        });
    }

    QDir _directory;
    bool _isVolume;
    QSet<QString> _atStart; // before the watcher looks
    TORVDirectoryWatcher _watcher;
    QHash<QString, int> _added;
    QHash<QString, int> _removed;
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream out(stdout);
    if (arguments.size() != 4) {
        out << "usage: soak_directories DATA3D DATA2D SECONDS\n";
        return 2;
    }
    TORVLog::Instance();
    Side volumes(arguments.at(1), TORVDirectoryWatchData::DIRECTORY_3D);
    Side flat(arguments.at(2), TORVDirectoryWatchData::DIRECTORY_2D);
    QTimer report;
    QObject::connect(&report, &QTimer::timeout, [&] {
        out << volumes.added() << " volumes, " << flat.added() << " flat products, " << megabytes() << " MB"
            << Qt::endl;
    });
    report.start(ReportPeriod_ms);
    QTimer::singleShot(arguments.at(3).toInt() * 1000 + SettleTime_ms, &application, &QCoreApplication::quit);
    QCoreApplication::exec();
    const bool areVolumesRight = volumes.judge(out);
    const bool areFlatRight = flat.judge(out);
    out << megabytes() << " MB at the end\n";
    return areVolumesRight && areFlatRight ? 0 : 1;
}
