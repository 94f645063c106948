#pragma once

#include "datalib/TORVDirectoryWatchData.h"

#include <QFileSystemWatcher>
#include <QMutex>
#include <QStringList>
#include <QThread>
#include <QTimer>
#include <QWaitCondition>

#include <boost/shared_ptr.hpp>

#include <atomic>

/**
 * Keeps the tree of one directory current while products arrive, slowly or in bursts, and vanish, and tells by a signal
 * what has changed. It sleeps until there is a reason for a pass:
 *
 * - the file system reports a change: at once, and again every 10 ms until a pass finds nothing new;
 * - files wait to become complete: every second;
 * - half a minute has gone by: network directories report nothing, and a directory that was removed and made again is
 *   no longer watched. Such a pass costs one listing, a look at each file that was given up, and at some of the others.
 *
 * The first reading of the directory is done on the thread too, so that nobody waits for a hundred thousand files:
 * `initialized` tells when the tree is there.
 *
 * Thread: the object lives on the main thread, which alone calls its functions and slots, but for `run` and what it
 * calls. The tree that `getTop` gives may be asked from any thread.
 */
class TORVDirectoryWatcher final : public QThread
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDirectoryWatcher)

public:
    static constexpr int RetryPeriod_ms = 1000;
    static constexpr int LookPeriod_ms = 30000;
    static constexpr int CalmPause_ms = 10;

    enum class Notices
    {
        ON,
        OFF ///< for directories whose file system reports nothing: looks alone find what is new
    };

    /// Starts the thread at once. An empty path is watched by nobody.
    TORVDirectoryWatcher(const QString& path, TORVDirectoryWatchData::DirectoryType type,
                         Notices notices = Notices::ON);
    ~TORVDirectoryWatcher() override;

    /// Ends the thread and waits for it.
    void stop();

    /// The next absolute path of those that were added or removed, empty when there is none.
    QString getAddedFile();
    QString getRemovedFile();

    /// Null until the directory has been read.
    boost::shared_ptr<TORVDirTop> getTop() const;

    /// Whether some files are not complete yet.
    bool isWaitingForFiles() const { return _isWaiting; }

Q_SIGNALS:
    // Emitted on the watcher's thread.
    void newFiles();
    /// The directory has been read. That may be so before anybody could connect: ask `getTop` as well.
    void initialized();

public Q_SLOTS:
    void pathChanged(const QString& path);
    void directoryChanged(const QString& path);
    void retryTimerExpired();
    /// A pass without any other reason; the timer's, every half a minute.
    void lookAgain();

protected:
    void run() override;

private:
    using DataPtr = boost::shared_ptr<TORVDirectoryWatchData>;

    void watch();
    void wake(void (TORVDirectoryWatchData::*mark)());
    bool sleepUntilNeeded(DataPtr& data, TORVDirectoryWatchData::Reasons& reasons);
    void pass(const DataPtr& data, const TORVDirectoryWatchData::Reasons& reasons);
    int queueOut(const DataPtr& data, bool markDirty);
    void askForRetry(int waiting);

    const TORVDirectoryWatchData::DirectoryType _type;
    const Notices _notices;
    QString _path;
    QFileSystemWatcher _fileSystemWatcher;
    QTimer _retryTimer;
    QTimer _lookTimer;
    std::atomic<bool> _isRetryAsked{false};
    std::atomic<bool> _isWaiting{false};

    mutable QMutex _mutex;
    QWaitCondition _condition;
    bool _running = true;               // guarded by _mutex
    bool _sleeping = false;             // guarded by _mutex
    DataPtr _data;                      // the pointer and the flags behind it guarded by _mutex
    boost::shared_ptr<TORVDirTop> _top; // guarded by _mutex
    QStringList _addedPaths;            // guarded by _mutex
    QStringList _removedPaths;          // guarded by _mutex
};
