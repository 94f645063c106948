#pragma once

#include "datalib/TORVDirectory.h"
#include "datalib/TORVDirectoryWatchData.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

class TORV2DTop;
class TORV3DTop;
class TORVDataStoreObserver;
class TORVDirectoryWatcher;
class TORVLandmarkList;
class TORVTerrainDir;

/**
 * The single owner of everything on the disk that the viewer knows about: the directories of volumes and of flat
 * products with their watchers, the terrain directory and the landmarks.
 *
 * A product directory is read by its watcher's thread, so its tree is not there at once: until then, and as long as
 * there is no such directory, its accessor answers null and searches find nothing. `initialized3d` and `initialized2d`
 * tell when a tree has come.
 *
 * Sites, products and configurations are names, without regard to case; "*" alone means all.
 *
 * Ownership: trees, terrain directory and landmarks are shared with whoever asked for them and outlive their
 * replacement by `setDirectories`. The observer is "not mine".
 *
 * Thread: main thread only. The trees may then be asked from any thread.
 */
class TORVDataStore final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDataStore)

public:
    using Ptr = boost::shared_ptr<TORVDataStore>;
    using CPtr = boost::shared_ptr<const TORVDataStore>;

    /// Reads the landmarks. The observer may be null; otherwise it outlives the store.
    explicit TORVDataStore(TORVDataStoreObserver* observer);

    /// Ends the watchers' threads; the observer isn't told.
    ~TORVDataStore() override;

    /**
     * Looks at other directories from now on; what has not changed is left alone. A directory that isn't there is no
     * failure: nothing is found in it. The terrain directory is scanned before this returns.
     * @param geoCachePath  where converted terrain is kept; made if need be, a "~" that begins it is the user's home
     */
    void setDirectories(const QString& path3d, const QString& path2d, const QString& geoPath,
                        const QString& geoCachePath);

    /// The newest volume, null if there is none. One from the future counts as newest; more than ten minutes ahead of
    /// this computer's clock it is reported, once for each site.
    TORVFileLeaf::Ptr getLatestData(const QString& site, const QString& product, const QString& configuration);

    /// Appends all such volumes, oldest first; of several of one time the first by the name of its place in the tree.
    void getDataSequence(QVector<TORVFileLeaf::Ptr>& leaves, const QString& site, const QString& product,
                         const QString& configuration) const;

    boost::shared_ptr<TORV3DTop> getDirTop3d() const;
    boost::shared_ptr<TORV2DTop> getDirTop2d() const;

    /// Null until `setDirectories`.
    boost::shared_ptr<TORVTerrainDir> getTerrainDir() const;

    /// Never null.
    boost::shared_ptr<TORVLandmarkList> getLandmarkList() const;

Q_SIGNALS:
    // Emitted on the main thread, once for each new path, always after the `setDirectories` that gave the path.
    void initialized3d();
    void initialized2d();

public Q_SLOTS:
    /// Tell the observer what a watcher has found since the last call; there must be a watcher.
    void dirChanged3d();
    void dirChanged2d();

private Q_SLOTS:
    void tellInitialized();

private:
    using WatcherPtr = boost::shared_ptr<TORVDirectoryWatcher>;

    WatcherPtr watch(const QString& path, TORVDirectoryWatchData::DirectoryType type,
                     void (TORVDataStore::*dirChanged)());
    void useTerrain(const QString& geoPath, const QString& geoCachePath);
    void reportClock(const TORVFileLeaf& newest);

    TORVDataStoreObserver* const _observer;
    QString _path3d; // these four as they were given
    QString _path2d;
    QString _geoPath;
    QString _geoCachePath;
    bool _isTold3d = false; // whether `initialized3d` was emitted for the present path
    bool _isTold2d = false;
    QSet<QString> _sitesAhead; // whose clock was reported
    const boost::shared_ptr<TORVLandmarkList> _landmarkList;
    boost::shared_ptr<TORVTerrainDir> _terrainDir;
    WatcherPtr _dirWatch3d; // last, so that their threads end first
    WatcherPtr _dirWatch2d;
};
