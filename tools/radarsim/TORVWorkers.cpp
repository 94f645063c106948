#include "radarsim/TORVWorkers.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

TORVWorkers::TORVWorkers(int threads)
    : _threads(threads > 0 ? threads : std::max(1, static_cast<int>(std::thread::hardware_concurrency())))
{
}

QString TORVWorkers::run(int count, const Job& job) const
{
    std::atomic<int> next{0};
    std::mutex mutex;
    QString failure;
    const auto work = [&] {
        for (int number = next++; number < count; number = next++) {
            const QString words = job(number);
            if (words.isEmpty()) {
                continue;
            }
            next = count;
            const std::lock_guard<std::mutex> lock(mutex);
            failure = failure.isEmpty() ? words : failure;
        }
    };
    std::vector<std::thread> others;
    for (int i = 1; i < std::min(_threads, count); ++i) {
        others.emplace_back(work);
    }
    work();
    for (std::thread& other : others) {
        other.join();
    }
    return failure;
}
