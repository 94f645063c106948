#include "datalib/TORVTerrainLoader.h"

#include "datalib/TORVTerrainFile.h"

#include <QFile>

#include <algorithm>
#include <chrono>
#include <system_error>

namespace
{

// Nobody tells when the flag is set, so it's looked at that often.
constexpr std::chrono::milliseconds AbortPeriod{20};

} // namespace

TORVTerrainLoader::TORVTerrainLoader(TORVGeoProjection::CPtr projection,
                                     const QVector<boost::shared_ptr<TORVTerrainFile>>& blocks,
                                     const QStringList& cacheFiles, const std::atomic<bool>& abort)
    : _projection(std::move(projection)), _blocks(blocks), _cacheFiles(cacheFiles), _abort(abort),
      _jobs(static_cast<std::size_t>(blocks.size()))
{
    startThreads();
}

TORVTerrainLoader::~TORVTerrainLoader()
{
    for (std::thread& thread : _threads) {
        thread.join();
    }
}

// A system that is out of threads gets the work done by the caller.
void TORVTerrainLoader::startThreads()
{
    const unsigned int cores = std::clamp(std::thread::hardware_concurrency(), 1U, MaxThreads);
    try {
        for (unsigned int i = 0; i < std::min(cores, static_cast<unsigned int>(_blocks.size())); ++i) {
            _threads.emplace_back(&TORVTerrainLoader::work, this);
        }
    } catch (const std::system_error&) {
        if (_threads.empty()) {
            work();
        }
    }
}

void TORVTerrainLoader::work()
{
    for (int index = _next++; index < _blocks.size() && !_abort; index = _next++) {
        workOn(index);
    }
}

void TORVTerrainLoader::workOn(int index)
{
    TORVTerrainFile& block = *_blocks[index];
    const QString& cacheFile = _cacheFiles[index];
    block.holdLog();
    const bool isCached = QFile::exists(cacheFile);
    enter(index, isCached ? Step::LOADING : Step::CONVERTING, {});
    Result result;
    if (!isCached) {
        result = convert(index);
        enter(index, Step::LOADING, result);
    }
    // What was converted but can't be kept is loaded all the same; a damaged pair is made again once.
    if (!_abort && result.isKept && !block.isSourceLost() && !block.loadCachedData(cacheFile) && isCached) {
        result = convert(index);
    }
    enter(index, Step::DONE, result);
}

TORVTerrainLoader::Result TORVTerrainLoader::convert(int index) const
{
    TORVTerrainFile& block = *_blocks[index];
    const bool isWritten = block.convertData(_projection, _cacheFiles[index], _abort);
    return {true, isWritten || block.isSourceLost() || _abort};
}

void TORVTerrainLoader::enter(int index, Step step, const Result& result)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    _jobs[static_cast<std::size_t>(index)] = {step, result};
    _changed.notify_all();
}

bool TORVTerrainLoader::waitWhile(int index, bool (*isEarly)(Step))
{
    std::unique_lock<std::mutex> lock(_mutex);
    while (!_abort && isEarly(_jobs[static_cast<std::size_t>(index)].step)) {
        _changed.wait_for(lock, AbortPeriod);
    }
    return !_abort;
}

std::optional<bool> TORVTerrainLoader::waitForStart(int index)
{
    if (!waitWhile(index, [](Step step) { return step == Step::WAITING; })) {
        return std::nullopt;
    }
    const std::lock_guard<std::mutex> lock(_mutex);
    const Job& job = _jobs[static_cast<std::size_t>(index)];
    return job.step == Step::CONVERTING || job.result.isConverted;
}

std::optional<TORVTerrainLoader::Result> TORVTerrainLoader::waitForEnd(int index)
{
    if (!waitWhile(index, [](Step step) { return step != Step::DONE; })) {
        return std::nullopt;
    }
    const std::lock_guard<std::mutex> lock(_mutex);
    return _jobs[static_cast<std::size_t>(index)].result;
}
