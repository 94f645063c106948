#include "utils/TORVParallel.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

void TORVParallel::forEach(int count, const std::function<void(int index)>& work)
{
    std::atomic<int> next{0};
    const auto share = [&] {
        for (int index = next++; index < count; index = next++) {
            work(index);
        }
    };
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    const int helpers = std::min(count, cores) - 1;
    std::vector<std::thread> threads;
    try {
        for (int i = 0; i < helpers; ++i) {
            threads.emplace_back(share);
        }
    } catch (const std::system_error&) {
        // The threads that could be had do the work.
    }
    share();
    for (std::thread& thread : threads) {
        thread.join();
    }
}
