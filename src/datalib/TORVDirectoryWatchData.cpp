#include "datalib/TORVDirectoryWatchData.h"

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "datalib/TORVDirectoryListing.h"
#include "utils/TORVLog.h"

#include <QFile>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

#include <sys/stat.h>

namespace
{

constexpr int MostRetries = 10;

// Looking at a file over a network costs a round trip, so a look compares no more known files than this; in a larger
// directory they take turns.
constexpr std::size_t ComparedPerLook = 5000;

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

void logWarning(const QString& text)
{
    TORVLog::Instance()->logWarning(text);
}

std::string bytesOf(const QString& name)
{
    return QFile::encodeName(name).toStdString();
}

QString textOf(const std::string& bytes)
{
    return QFile::decodeName(bytes.c_str());
}

bool isUnfinished(int result)
{
    return result == TORVDirTop::DIR_NO_DATA || result == TORVDirTop::DIR_INCOMPLETE;
}

} // namespace

TORVDirectoryWatchData::TORVDirectoryWatchData(DirectoryType type) : _type(type) {}

TORVDirectoryWatchData::~TORVDirectoryWatchData() = default;

void TORVDirectoryWatchData::markDirty()
{
    _reasons.dirty = true;
    ++_reasons.notices;
}

TORVDirectoryWatchData::Reasons TORVDirectoryWatchData::takeReasons()
{
    const Reasons reasons = _reasons;
    _reasons = Reasons();
    _reasons.notices = reasons.notices;
    return reasons;
}

void TORVDirectoryWatchData::setPath(const QString& path)
{
    _path = path;
    _dir.setPath(path);
}

void TORVDirectoryWatchData::initialize(const QString& path)
{
    setPath(path);
    _initialized = false;
    if (path.isEmpty()) {
        return;
    }
    if (_dir.exists()) {
        startOver(false);
        return;
    }
    TORVLog::Instance()->logError(QLatin1String("TORVDirectoryWatchData::initialize(): Not a valid directory: ") +
                                  path);
}

void TORVDirectoryWatchData::startOver(bool isReported)
{
    std::vector<std::string> names;
    if (_path.isEmpty() || TORVDirectoryListing::read(_dir.absolutePath(), names) != TORVDirectoryListing::LISTED) {
        return;
    }
    _dir.makeAbsolute();
    // The listing comes before the tree: a file that arrives in between is then seen as new, not lost.
    for (const std::string& name : names) {
        _names.emplace(name, Name());
    }
    _initialized = dirFactory();
    for (const std::string& name : names) {
        sortStartingName(name, isReported);
    }
}

// What lies there at the start is in the tree, or still growing, or nothing that was ever wanted.
void TORVDirectoryWatchData::sortStartingName(const std::string& bytes, bool isReported)
{
    const QString name = textOf(bytes);
    const FileState state = stateOf(name);
    if (_top->findLeaf(name)) {
        _names[bytes].state = state;
        if (isReported) {
            _reportAdded << name;
        }
    } else if (_top->isUnfinished(name)) {
        _retryQueue.push_back({name, 0, state.size});
    } else {
        drop(name, state, false);
    }
}

bool TORVDirectoryWatchData::dirFactory()
{
    switch (_type) {
    case DIRECTORY_3D:
        _top = boost::make_shared<TORV3DTop>(_dir.absolutePath());
        return true;
    case DIRECTORY_2D:
        _top = boost::make_shared<TORV2DTop>(_dir.absolutePath());
        return true;
    }
    return false;
}

bool TORVDirectoryWatchData::checkUpdates(const Reasons& reasons)
{
    if (!_initialized && (reasons.start || reasons.look)) {
        reasons.start ? initialize(_path) : startOver(true);
        return false;
    }
    if (!_initialized) {
        return false;
    }
    _added.clear();
    _removed.clear();
    const bool isNamed = (reasons.dirty || reasons.look) && isChanged();
    const bool isFound = (reasons.look && isAltered()) || isNamed;
    if (!isFound && !reasons.retry) {
        return false;
    }
    logDebug(isFound ? QStringLiteral("REFRESH DIRECTORY/NEW OR DELETED ITEMS") : QStringLiteral("REFRESH/RETRY"));
    refresh(reasons);
    _reportAdded += _added;
    _reportRemoved += _removed;
    return isFound;
}

bool TORVDirectoryWatchData::isChanged()
{
    std::vector<std::string> names;
    const TORVDirectoryListing::Result result = TORVDirectoryListing::read(_dir.absolutePath(), names);
    if (result == TORVDirectoryListing::UNREADABLE) {
        // No news is not bad news: what is known stays until the directory can be read again.
        if (!std::exchange(_isUnreadableReported, true)) {
            logWarning(QLatin1String("Directory can't be read: ") + _dir.absolutePath());
        }
        return false;
    }
    _isUnreadableReported = false;
    compareListing(names);
    return !_added.isEmpty() || !_removed.isEmpty();
}

// Each name of the listing is marked with this pass; what is left unmarked has gone.
void TORVDirectoryWatchData::compareListing(const std::vector<std::string>& names)
{
    ++_pass;
    const std::size_t before = _names.size();
    std::size_t again = 0;
    for (const std::string& bytes : names) {
        const auto [entry, isNew] = _names.try_emplace(bytes);
        entry->second.pass = _pass;
        if (isNew) {
            _added << textOf(bytes);
        } else {
            ++again;
        }
    }
    if (again < before) {
        for (auto entry = _names.begin(); entry != _names.end();) {
            const bool isGone = entry->second.pass != _pass;
            if (isGone) {
                _removed << textOf(entry->first);
            }
            entry = isGone ? _names.erase(entry) : std::next(entry);
        }
    }
    _added.sort();
    _removed.sort();
}

bool TORVDirectoryWatchData::isAltered()
{
    const bool areDropped = areDroppedAltered();
    return areKnownAltered() || areDropped;
}

bool TORVDirectoryWatchData::areDroppedAltered()
{
    const int before = _added.size();
    for (auto entry = _dropped.cbegin(); entry != _dropped.cend(); ++entry) {
        const FileState state = stateOf(entry.key());
        if (state.size >= 0 && state != entry->state) {
            _added << entry.key();
        }
    }
    return _added.size() > before;
}

bool TORVDirectoryWatchData::areKnownAltered()
{
    if (_toCompare.empty()) {
        _toCompare.reserve(_names.size());
        for (const auto& entry : _names) {
            _toCompare.push_back(entry.first);
        }
    }
    const int before = _removed.size();
    for (std::size_t turn = 0; turn < ComparedPerLook && !_toCompare.empty(); ++turn) {
        const auto entry = _names.find(_toCompare.back());
        _toCompare.pop_back();
        if (entry == _names.end() || entry->second.state.size < 0) {
            continue; // gone, or not in the tree
        }
        const QString name = textOf(entry->first);
        if (stateOf(name) != entry->second.state) {
            entry->second.state = FileState();
            _removed << name;
            _added << name;
        }
    }
    return _removed.size() > before;
}

// Removals come first: a product that returns under another name would else meet its own old leaf.
void TORVDirectoryWatchData::refresh(const Reasons& reasons)
{
    logDebug(QStringLiteral("%1: directory %2 has changed (%3)")
                 .arg(reasons.notices)
                 .arg(_dir.absolutePath())
                 .arg(_added.size() + _removed.size()));
    removeFilesFromDir();
    addFilesToDir();
    doRetries(reasons.retry);
}

void TORVDirectoryWatchData::removeFilesFromDir()
{
    QStringList removed;
    for (const QString& name : std::as_const(_removed)) {
        if (_top->removeFile(name) == TORVDirTop::DIR_OK) {
            logDebug(QLatin1String("REMOVE: REMOVED FROM DIRECTORY ") + name);
            removed << name;
        } else {
            TORVLog::Instance()->logNotice(QLatin1String("COULD NOT REMOVE FILE (NOT IN DIRECTORY) ") + name);
        }
        forget(name);
    }
    _removed = removed;
    if (removed.isEmpty()) {
        return;
    }
    for (auto entry = _dropped.cbegin(); entry != _dropped.cend(); ++entry) {
        if (entry->isDuplicate && !_added.contains(entry.key())) {
            _added << entry.key(); // its turn may have come
        }
    }
}

void TORVDirectoryWatchData::forget(const QString& name)
{
    _dropped.remove(name);
    const auto isOfName = [&name](const TORVDirWatchRetryItem& item) { return item.name == name; };
    _retryQueue.erase(std::remove_if(_retryQueue.begin(), _retryQueue.end(), isOfName), _retryQueue.end());
}

void TORVDirectoryWatchData::addFilesToDir()
{
    QStringList added;
    for (const QString& name : std::as_const(_added)) {
        logDebug(QLatin1String("ADD: TRYING TO ADD ") + name);
        if (addFile(name)) {
            logDebug(QLatin1String("ADD: ADDED TO DIRECTORY ") + name);
            added << name;
        }
    }
    _added = added;
}

bool TORVDirectoryWatchData::addFile(const QString& name)
{
    const FileState state = stateOf(name);
    if (_top->findLeaf(name)) {
        remember(name, state); // it arrived while the directory was read for the first time
        return false;
    }
    const int result = _top->addFile(name);
    if (result == TORVDirTop::DIR_OK) {
        remember(name, state);
        return true;
    }
    if (isUnfinished(result)) {
        logDebug(QLatin1String("ADD: FILE IS NOT COMPLETE ") + name);
        _dropped.remove(name);
        _retryQueue.push_back({name, 0, state.size});
        return false;
    }
    const bool isDuplicate = result == TORVDirTop::DIR_DUPLICATE;
    if (drop(name, state, isDuplicate)) {
        logWarning((isDuplicate ? QLatin1String("INCOMING FILE DISCARDED (DUPLICATE):  ")
                                : QLatin1String("INCOMING FILE DISCARDED: (INVALID OR NO PERMISSIONS): ")) +
                   name);
    }
    return false;
}

void TORVDirectoryWatchData::doRetries(bool countRetries)
{
    std::vector<TORVDirWatchRetryItem> waiting;
    for (TORVDirWatchRetryItem& item : _retryQueue) {
        if (retry(item, countRetries)) {
            waiting.push_back(std::move(item));
        }
    }
    _retryQueue.swap(waiting);
}

// The count measures seconds of silence, so only a pass that the timer asked for counts: a burst of other files brings
// many passes in a second. @return whether the file goes on waiting.
bool TORVDirectoryWatchData::retry(TORVDirWatchRetryItem& item, bool countRetries)
{
    const FileState state = stateOf(item.name);
    logDebug(QStringLiteral("RETRY: %1, size then: %2, size now: %3").arg(item.name).arg(item.size).arg(state.size));
    if (state.size < 0) {
        return false; // the listing will tell
    }
    if (state.size > item.size) {
        item.retryCount = 0;
        item.size = state.size;
    } else if (countRetries) {
        ++item.retryCount;
    }
    const QString prefix = QStringLiteral("RETRY(%1").arg(item.retryCount);
    logDebug(prefix + QLatin1String(") ADDING ") + item.name);
    const int result = _top->addFile(item.name);
    if (result == TORVDirTop::DIR_OK) {
        logDebug(prefix + QLatin1String("): ADDED TO DIRECTORY ") + item.name);
        remember(item.name, state);
        _added << item.name;
        return false;
    }
    if (!isUnfinished(result)) {
        drop(item.name, state, result == TORVDirTop::DIR_DUPLICATE);
        logWarning(QLatin1String("INCOMING FILE DISCARDED AFTER RETRIES (INVALID OR NO PERMISSIONS): ") + item.name);
        return false;
    }
    logDebug(prefix + QLatin1String("): FILE STILL INCOMPLETE: ") + item.name);
    if (item.retryCount <= MostRetries) {
        return true;
    }
    drop(item.name, state, false);
    logWarning(QLatin1String("TOO MANY RETRIES, FILE DISCARDED: ") + item.name);
    return false;
}

void TORVDirectoryWatchData::remember(const QString& name, const FileState& state)
{
    _dropped.remove(name);
    const auto entry = _names.find(bytesOf(name));
    if (entry != _names.end()) {
        entry->second.state = state;
    }
}

// @return whether this is news: a file that is refused again for the same reason is not.
bool TORVDirectoryWatchData::drop(const QString& name, const FileState& state, bool isDuplicate)
{
    const auto entry = _dropped.constFind(name);
    const bool isNews = entry == _dropped.cend() || entry->state != state || entry->isDuplicate != isDuplicate;
    _dropped.insert(name, {state, isDuplicate});
    return isNews;
}

TORVDirectoryWatchData::FileState TORVDirectoryWatchData::stateOf(const QString& name) const
{
    struct stat state = {};
    if (::stat(QFile::encodeName(_dir.absoluteFilePath(name)).constData(), &state) != 0) {
        return {};
    }
    return {state.st_size, state.st_mtim.tv_sec * qint64{1000000000} + state.st_mtim.tv_nsec};
}

QStringList TORVDirectoryWatchData::takeAdded()
{
    return takePaths(_reportAdded);
}

QStringList TORVDirectoryWatchData::takeRemoved()
{
    return takePaths(_reportRemoved);
}

QStringList TORVDirectoryWatchData::takePaths(QStringList& names) const
{
    QStringList paths;
    paths.reserve(names.size());
    for (const QString& name : std::as_const(names)) {
        paths << _dir.absoluteFilePath(name);
    }
    names.clear();
    return paths;
}
