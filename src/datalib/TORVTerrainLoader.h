#pragma once

#include "utils/TORVGeoProjection.h"

#include <QStringList>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

class TORVTerrainFile;

/**
 * Loads the blocks of a set on a few threads of its own, converting those that have no cached pair, and lets the caller
 * follow block by block in the order of the set, so that what is told about the work reads as if it were done one after
 * the other. No more blocks are in work than there are threads, which bounds the memory.
 *
 * Thread: one caller. The threads end with the object, soon after the abort flag is set.
 */
class TORVTerrainLoader final
{
public:
    static constexpr unsigned int MaxThreads = 4;

    struct Result
    {
        bool isConverted = false; ///< at least once
        bool isKept = true;       ///< false where the pair could not be written into the cache
    };

    /// The abort flag and the lists outlive the object.
    TORVTerrainLoader(TORVGeoProjection::CPtr projection, const QVector<boost::shared_ptr<TORVTerrainFile>>& blocks,
                      const QStringList& cacheFiles, const std::atomic<bool>& abort);
    ~TORVTerrainLoader();
    TORVTerrainLoader(const TORVTerrainLoader&) = delete;
    TORVTerrainLoader& operator=(const TORVTerrainLoader&) = delete;

    /// Waits until the block is in work. @return whether it has to be converted; nothing when aborted.
    std::optional<bool> waitForStart(int index);

    /// Waits until the block is done, loaded or not. Nothing when aborted.
    std::optional<Result> waitForEnd(int index);

private:
    enum class Step
    {
        WAITING,
        CONVERTING,
        LOADING,
        DONE
    };

    struct Job
    {
        Step step = Step::WAITING;
        Result result;
    };

    void startThreads();
    void work();
    void workOn(int index);
    Result convert(int index) const;
    void enter(int index, Step step, const Result& result);
    bool waitWhile(int index, bool (*isEarly)(Step));

    const TORVGeoProjection::CPtr _projection;
    const QVector<boost::shared_ptr<TORVTerrainFile>>& _blocks;
    const QStringList& _cacheFiles;
    const std::atomic<bool>& _abort;
    std::atomic<int> _next{0};
    std::mutex _mutex;
    std::condition_variable _changed;
    std::vector<Job> _jobs; // guarded by _mutex
    std::vector<std::thread> _threads;
};
