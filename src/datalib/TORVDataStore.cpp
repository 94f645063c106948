#include "datalib/TORVDataStore.h"

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "datalib/TORVDataStoreObserver.h"
#include "datalib/TORVDirectoryWatcher.h"
#include "datalib/TORVLandmarkList.h"
#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVWildcard.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QDateTime>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>

namespace
{

constexpr qint64 ClockTolerance_ms = 600000; // ten minutes

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

QStringList takeAdded(TORVDirectoryWatcher& watcher)
{
    QStringList added;
    for (QString path = watcher.getAddedFile(); !path.isEmpty(); path = watcher.getAddedFile()) {
        logDebug(QLatin1String(" - added filename=") + path);
        added << path;
    }
    return added;
}

QStringList takeRemoved(TORVDirectoryWatcher& watcher)
{
    QStringList removed;
    for (QString path = watcher.getRemovedFile(); !path.isEmpty(); path = watcher.getRemovedFile()) {
        logDebug(QLatin1String(" - removed filename=") + path);
        removed << path;
    }
    return removed;
}

// A watcher of that type of directory has a tree of that type.
template <typename Top>
boost::shared_ptr<Top> topOf(const boost::shared_ptr<TORVDirectoryWatcher>& watcher)
{
    return watcher ? boost::static_pointer_cast<Top>(watcher->getTop()) : nullptr;
}

bool isOlder(const TORVFileLeaf::Ptr& a, const TORVFileLeaf::Ptr& b)
{
    return a->dataTime_ms() < b->dataTime_ms();
}

} // namespace

TORVDataStore::TORVDataStore(TORVDataStoreObserver* observer)
    : _observer(observer), _landmarkList(boost::make_shared<TORVLandmarkList>())
{
}

TORVDataStore::~TORVDataStore() = default;

void TORVDataStore::setDirectories(const QString& path3d, const QString& path2d, const QString& geoPath,
                                   const QString& geoCachePath)
{
    if (!_dirWatch3d || path3d != _path3d) {
        logDebug(QStringLiteral("Initializing 3d data directory.."));
        logDebug(QLatin1String("new 3d data path=") + path3d);
        _isTold3d = false;
        _dirWatch3d = watch(path3d, TORVDirectoryWatchData::DIRECTORY_3D, &TORVDataStore::dirChanged3d);
        _path3d = path3d;
    }
    if (!_dirWatch2d || path2d != _path2d) {
        logDebug(QStringLiteral("Initializing 2d data directory.."));
        logDebug(QLatin1String("new 2d data path=") + path2d);
        _isTold2d = false;
        _dirWatch2d = watch(path2d, TORVDirectoryWatchData::DIRECTORY_2D, &TORVDataStore::dirChanged2d);
        _path2d = path2d;
    }
    if (!_terrainDir || geoPath != _geoPath || geoCachePath != _geoCachePath) {
        useTerrain(geoPath, geoCachePath);
    }
}

TORVDataStore::WatcherPtr TORVDataStore::watch(const QString& path, TORVDirectoryWatchData::DirectoryType type,
                                               void (TORVDataStore::*dirChanged)())
{
    const WatcherPtr watcher = boost::make_shared<TORVDirectoryWatcher>(path, type);
    connect(watcher.get(), &TORVDirectoryWatcher::newFiles, this, dirChanged);
    connect(watcher.get(), &TORVDirectoryWatcher::initialized, this, &TORVDataStore::tellInitialized);
    // Its thread may have read the directory before there was a connection.
    QMetaObject::invokeMethod(this, "tellInitialized", Qt::QueuedConnection);
    return watcher;
}

void TORVDataStore::tellInitialized()
{
    if (!_isTold3d && getDirTop3d()) {
        _isTold3d = true;
        Q_EMIT initialized3d();
    }
    if (!_isTold2d && getDirTop2d()) {
        _isTold2d = true;
        Q_EMIT initialized2d();
    }
}

void TORVDataStore::useTerrain(const QString& geoPath, const QString& geoCachePath)
{
    logDebug(QStringLiteral("Initializing geo data directory.."));
    logDebug(QLatin1String("new geo data path=") + geoPath);
    logDebug(QLatin1String("new geo cache path=") + geoCachePath);
    _terrainDir = boost::make_shared<TORVTerrainDir>(geoPath, geoCachePath);
    _terrainDir->scanFiles();
    _geoPath = geoPath;
    _geoCachePath = geoCachePath;
}

void TORVDataStore::dirChanged3d()
{
    assert(_dirWatch3d);
    const QStringList added = takeAdded(*_dirWatch3d);
    const QStringList removed = takeRemoved(*_dirWatch3d);
    if (_observer && !(added.isEmpty() && removed.isEmpty())) {
        _observer->dataStoreNewDataAvailable3d(this, added, removed);
    }
}

void TORVDataStore::dirChanged2d()
{
    assert(_dirWatch2d);
    const QStringList added = takeAdded(*_dirWatch2d);
    const QStringList removed = takeRemoved(*_dirWatch2d);
    if (_observer && !(added.isEmpty() && removed.isEmpty())) {
        _observer->dataStoreNewDataAvailable2d(this, added, removed);
    }
}

TORVFileLeaf::Ptr TORVDataStore::getLatestData(const QString& site, const QString& product,
                                               const QString& configuration)
{
    const boost::shared_ptr<TORV3DTop> top = getDirTop3d();
    if (!top) {
        return {};
    }
    const TORVDirTop::LeavesPtr leaves = top->findLatestLeaves(
        TORVWildcard::patternFor(site), TORVWildcard::patternFor(product), TORVWildcard::patternFor(configuration), 0);
    TORVFileLeaf::Ptr newest;
    for (const TORVDirectory::Ptr& node : *leaves) {
        const TORVFileLeaf::Ptr leaf = boost::static_pointer_cast<TORVFileLeaf>(node);
        if (!newest || isOlder(newest, leaf)) {
            newest = leaf;
        }
    }
    if (newest) {
        reportClock(*newest);
    }
    return newest;
}

void TORVDataStore::reportClock(const TORVFileLeaf& newest)
{
    const QString site = newest.getSite();
    const qint64 lead_ms = newest.dataTime_ms() - QDateTime::currentMSecsSinceEpoch();
    if (lead_ms <= ClockTolerance_ms || _sitesAhead.contains(site)) {
        return;
    }
    _sitesAhead.insert(site);
    TORVLog::Instance()->logWarning(QLatin1String("Newest data lies in the future: ") + newest.getPath());
    TORVLog::Instance()->logHistory(
        QCoreApplication::translate(
            "Datalib", "The newest data of site %1 lies in the future: the radar's or this computer's clock is wrong.")
            .arg(site));
}

void TORVDataStore::getDataSequence(QVector<TORVFileLeaf::Ptr>& leaves, const QString& site, const QString& product,
                                    const QString& configuration) const
{
    const boost::shared_ptr<TORV3DTop> top = getDirTop3d();
    if (!top) {
        return;
    }
    const TORVDirTop::LeavesPtr found =
        top->findLeaves(TORVWildcard::patternFor(site), TORVWildcard::patternFor(product),
                        TORVWildcard::patternFor(configuration), QStringLiteral("*"));
    logDebug(QStringLiteral("number of leaves found: %1").arg(found->size()));
    const int oldSize = leaves.size();
    leaves.reserve(oldSize + found->size());
    for (const TORVDirectory::Ptr& node : *found) {
        logDebug(QLatin1String("-testing: ") + node->getName());
        leaves.append(boost::static_pointer_cast<TORVFileLeaf>(node));
    }
    // Keys hold the year in two digits, or no time at all: their order is not that of the data.
    std::stable_sort(leaves.begin() + oldSize, leaves.end(), isOlder);
}

boost::shared_ptr<TORV3DTop> TORVDataStore::getDirTop3d() const
{
    return topOf<TORV3DTop>(_dirWatch3d);
}

boost::shared_ptr<TORV2DTop> TORVDataStore::getDirTop2d() const
{
    return topOf<TORV2DTop>(_dirWatch2d);
}

boost::shared_ptr<TORVTerrainDir> TORVDataStore::getTerrainDir() const
{
    return _terrainDir;
}

boost::shared_ptr<TORVLandmarkList> TORVDataStore::getLandmarkList() const
{
    return _landmarkList;
}
