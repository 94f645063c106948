#pragma once

#include <QDir>
#include <QHash>
#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

#include <string>
#include <unordered_map>
#include <vector>

class TORVDirTop;

/// A file that is not complete yet, or was not when it was last tried.
struct TORVDirWatchRetryItem
{
    QString name;
    int retryCount = 0; ///< seconds without growth
    qint64 size = 0;    ///< bytes when last tried
};

/**
 * What a watcher knows of its directory: the names last seen, the tree they fill, and the files that wait or were given
 * up.
 *
 * A name is in one of four states: known (a leaf in the tree), waiting (in the retry queue), dropped (not a product, or
 * a duplicate; its size and time are remembered) or unseen.
 *
 *   unseen  -> known     a complete product                            reported as added
 *   unseen  -> waiting   empty or incomplete
 *   unseen  -> dropped   invalid, of a wrong type, or a duplicate      one warning
 *   waiting -> known     complete at last                              reported as added
 *   waiting -> dropped   eleven ticks without growth, or no product    one warning
 *   dropped -> unseen    its size or time has changed, or the product that a duplicate stood behind has gone
 *   known   -> unseen    its size or time has changed                  reported as removed
 *   any     -> gone      the name has left the directory               reported as removed if it was known
 *
 * Thread: the flags (`mark...`, `takeReasons`) under the watcher's mutex; all else on the watcher's thread, or before
 * it runs. The tree has a lock of its own.
 */
class TORVDirectoryWatchData final
{
public:
    enum DirectoryType : int
    {
        DIRECTORY_2D = 2, ///< flat products
        DIRECTORY_3D = 3  ///< volumes
    };

    /// Why a pass is made.
    struct Reasons
    {
        bool start = false; ///< the directory has not been read yet
        bool dirty = false; ///< the file system has reported a change
        bool retry = false; ///< a second has gone by
        bool look = false;  ///< nobody has reported anything, look all the same
        int notices = 0;    ///< since the start, for the log

        bool any() const { return start || dirty || retry || look; }
    };

    explicit TORVDirectoryWatchData(DirectoryType type);
    ~TORVDirectoryWatchData();
    TORVDirectoryWatchData(const TORVDirectoryWatchData&) = delete;
    TORVDirectoryWatchData& operator=(const TORVDirectoryWatchData&) = delete;

    /// The directory to watch; before the thread knows the object.
    void setPath(const QString& path);
    /// Reads the whole directory into a new tree. Complete files that lie there are reported to nobody.
    void initialize(const QString& path);
    bool isInitialized() const { return _initialized; }

    void markStart() { _reasons.start = true; }
    void markDirty();
    void markRetry() { _reasons.retry = true; }
    void markLook() { _reasons.look = true; }
    bool hasReasons() const { return _reasons.any(); }
    /// What was marked since the last call.
    Reasons takeReasons();

    /// One pass. @return whether the directory had changed, so that it is to be looked at again at once.
    bool checkUpdates(const Reasons& reasons);

    /// Absolute paths of what the passes since the last call have added to the tree and removed from it.
    QStringList takeAdded();
    QStringList takeRemoved();

    int retryQueueLength() const { return static_cast<int>(_retryQueue.size()); }
    /// Null until the directory could be read.
    boost::shared_ptr<TORVDirTop> getTop() const { return _top; }
    QString absolutePath() const { return _dir.absolutePath(); }

private:
    /// What tells one content of a file from the next without reading it.
    struct FileState
    {
        qint64 size = -1; ///< -1: there is no such file
        qint64 time_ns = 0;

        bool operator==(const FileState& other) const { return size == other.size && time_ns == other.time_ns; }
        bool operator!=(const FileState& other) const { return !(*this == other); }
    };
    struct Name
    {
        FileState state; // of what is in the tree
        int pass = 0;    // the listing that held it last
    };
    struct Dropped
    {
        FileState state;
        bool isDuplicate = false;
    };

    bool dirFactory();
    void startOver(bool isReported);
    void sortStartingName(const std::string& bytes, bool isReported);
    bool isChanged();
    void compareListing(const std::vector<std::string>& names);
    bool isAltered();
    bool areDroppedAltered();
    bool areKnownAltered();
    void refresh(const Reasons& reasons);
    void removeFilesFromDir();
    void forget(const QString& name);
    void addFilesToDir();
    bool addFile(const QString& name);
    void doRetries(bool countRetries);
    bool retry(TORVDirWatchRetryItem& item, bool countRetries);
    void remember(const QString& name, const FileState& state);
    bool drop(const QString& name, const FileState& state, bool isDuplicate);
    FileState stateOf(const QString& name) const;
    QStringList takePaths(QStringList& names) const;

    DirectoryType _type;
    bool _initialized = false;
    bool _isUnreadableReported = false;
    Reasons _reasons; // guarded by the watcher's mutex
    boost::shared_ptr<TORVDirTop> _top;
    QString _path; // as given; empty for a directory that nobody watches
    QDir _dir;
    std::unordered_map<std::string, Name> _names; // last seen
    int _pass = 0;
    std::vector<std::string> _toCompare; // names whose turn for a comparison comes
    QStringList _added;                  // names of this pass
    QStringList _removed;
    QStringList _reportAdded; // names that are to be told of
    QStringList _reportRemoved;
    QHash<QString, Dropped> _dropped;
    std::vector<TORVDirWatchRetryItem> _retryQueue;
};
