#include "datalib/TORVDirectoryWatcher.h"

#include "datalib/TORVDirTop.h"
#include "utils/TORVLog.h"

#include <QMutexLocker>

#include <boost/make_shared.hpp>

namespace
{

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

QString takeFirst(QStringList& paths)
{
    return paths.isEmpty() ? QString() : paths.takeFirst();
}

} // namespace

TORVDirectoryWatcher::TORVDirectoryWatcher(const QString& path, TORVDirectoryWatchData::DirectoryType type,
                                           Notices notices)
    : _type(type), _notices(notices)
{
    TORVLog::Instance()->logNotice(QLatin1String("TORVDirectoryWatcher: Directory watcher created for path: ") + path);
    connect(&_fileSystemWatcher, &QFileSystemWatcher::directoryChanged, this, &TORVDirectoryWatcher::directoryChanged);
    _retryTimer.setSingleShot(true);
    _retryTimer.setInterval(RetryPeriod_ms);
    connect(&_retryTimer, &QTimer::timeout, this, &TORVDirectoryWatcher::retryTimerExpired);
    _lookTimer.start(LookPeriod_ms);
    connect(&_lookTimer, &QTimer::timeout, this, &TORVDirectoryWatcher::lookAgain);
    _path = path;
    _data = boost::make_shared<TORVDirectoryWatchData>(_type);
    _data->setPath(path);
    _data->markStart();
    watch();
    start();
}

TORVDirectoryWatcher::~TORVDirectoryWatcher()
{
    logDebug(QLatin1String("TORVDirectoryWatcher: Directory watcher ends for path: ") + _path);
    stop();
}

void TORVDirectoryWatcher::stop()
{
    {
        const QMutexLocker lock(&_mutex);
        _running = false;
        _condition.wakeAll();
    }
    wait();
}

QString TORVDirectoryWatcher::getAddedFile()
{
    const QMutexLocker lock(&_mutex);
    return takeFirst(_addedPaths);
}

QString TORVDirectoryWatcher::getRemovedFile()
{
    const QMutexLocker lock(&_mutex);
    return takeFirst(_removedPaths);
}

boost::shared_ptr<TORVDirTop> TORVDirectoryWatcher::getTop() const
{
    const QMutexLocker lock(&_mutex);
    return _top;
}

void TORVDirectoryWatcher::pathChanged(const QString& path)
{
    logDebug(QLatin1String("Change directory path to ") + path);
    const QStringList watched = _fileSystemWatcher.directories();
    if (!watched.isEmpty()) {
        _fileSystemWatcher.removePaths(watched);
    }
    const DataPtr fresh = boost::make_shared<TORVDirectoryWatchData>(_type);
    fresh->setPath(path);
    fresh->markStart();
    _path = path;
    watch();
    const QMutexLocker lock(&_mutex);
    _data = fresh;
    _top.reset();
    _addedPaths.clear();
    _removedPaths.clear();
    _condition.wakeAll();
}

// Notices carry the path in the letters in which it was added, so it is added in those that the data has.
void TORVDirectoryWatcher::watch()
{
    const QString absolute = QDir(_path).absolutePath();
    if (_notices == Notices::OFF || _path.isEmpty() || _fileSystemWatcher.directories().contains(absolute)) {
        return;
    }
    if (QDir(absolute).exists() && _fileSystemWatcher.addPath(absolute)) {
        logDebug(QLatin1String(".... Now watching directory ") + absolute);
    }
}

void TORVDirectoryWatcher::directoryChanged(const QString& path)
{
    logDebug(QLatin1String("Notification time: ") + QTime::currentTime().toString(Qt::ISODateWithMs));
    logDebug(QLatin1String("Changed directory: ") + path);
    if (path == QDir(_path).absolutePath()) {
        wake(&TORVDirectoryWatchData::markDirty);
    }
}

void TORVDirectoryWatcher::retryTimerExpired()
{
    _isRetryAsked = false;
    wake(&TORVDirectoryWatchData::markRetry);
}

void TORVDirectoryWatcher::lookAgain()
{
    watch();
    wake(&TORVDirectoryWatchData::markLook);
}

void TORVDirectoryWatcher::wake(void (TORVDirectoryWatchData::*mark)())
{
    const QMutexLocker lock(&_mutex);
    (_data.get()->*mark)();
    if (_sleeping) {
        _condition.wakeAll();
    }
}

void TORVDirectoryWatcher::run()
{
    DataPtr data;
    TORVDirectoryWatchData::Reasons reasons;
    while (sleepUntilNeeded(data, reasons)) {
        pass(data, reasons);
    }
}

bool TORVDirectoryWatcher::sleepUntilNeeded(DataPtr& data, TORVDirectoryWatchData::Reasons& reasons)
{
    const QMutexLocker lock(&_mutex);
    while (_running && !_data->hasReasons()) {
        _sleeping = true;
        logDebug(QStringLiteral("TORVDirectoryWatcher: Directories clean - going to sleep"));
        _condition.wait(&_mutex);
        _sleeping = false;
        logDebug(QStringLiteral("TORVDirectoryWatcher: --- WAKE UP --"));
    }
    data = _data;
    // Taken before the listing: a change that is reported while it runs calls for the next pass.
    reasons = _data->takeReasons();
    return _running;
}

void TORVDirectoryWatcher::pass(const DataPtr& data, const TORVDirectoryWatchData::Reasons& reasons)
{
    if (!reasons.start) {
        msleep(CalmPause_ms); // what comes in a burst is taken together
    }
    const bool wasInitialized = data->isInitialized();
    const bool isChanged = data->checkUpdates(reasons);
    const int count = queueOut(data, isChanged);
    askForRetry(data->retryQueueLength());
    if (!wasInitialized && data->isInitialized()) {
        Q_EMIT initialized();
    }
    if (count > 0) {
        logDebug(QStringLiteral("FILES QUEUED (%1)").arg(count));
        Q_EMIT newFiles();
    }
}

int TORVDirectoryWatcher::queueOut(const DataPtr& data, bool markDirty)
{
    const QStringList added = data->takeAdded();
    const QStringList removed = data->takeRemoved();
    const QMutexLocker lock(&_mutex);
    if (data != _data) {
        return 0; // the path has changed meanwhile
    }
    _top = data->getTop();
    _addedPaths += added;
    _removedPaths += removed;
    if (markDirty) {
        data->markDirty(); // calm is a pass that finds no difference
    }
    return added.size() + removed.size();
}

// The timer lives on the main thread, so it is asked for by a queued call.
void TORVDirectoryWatcher::askForRetry(int waiting)
{
    _isWaiting = waiting > 0;
    if (waiting == 0 || _isRetryAsked.exchange(true)) {
        return;
    }
    logDebug(QStringLiteral("ITEMS IN RETRY QUEUE - STARTING TIMER %1").arg(waiting));
    QMetaObject::invokeMethod(&_retryTimer, "start", Qt::QueuedConnection);
}
