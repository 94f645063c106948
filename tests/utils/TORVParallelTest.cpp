#include "utils/TORVParallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

TEST(TORVParallelTest, DoesEachRoundOnce)
{
    std::vector<int> rounds(1000, 0);
    TORVParallel::forEach(1000, [&](int index) { ++rounds[static_cast<std::size_t>(index)]; });
    EXPECT_EQ(rounds, std::vector<int>(1000, 1));
}

TEST(TORVParallelTest, DoesNothingForNoRounds)
{
    TORVParallel::forEach(0, [](int) { FAIL(); });
    TORVParallel::forEach(-3, [](int) { FAIL(); });
}

TEST(TORVParallelTest, HasDoneAllWhenItReturns)
{
    std::atomic<int> done{0};
    TORVParallel::forEach(64, [&](int) {
        std::this_thread::yield();
        ++done;
    });
    EXPECT_EQ(done, 64);
}

TEST(TORVParallelTest, ServesSeveralCallersAtOnce)
{
    std::atomic<int> done{0};
    std::thread other([&] { TORVParallel::forEach(100, [&](int) { ++done; }); });
    TORVParallel::forEach(100, [&](int) { ++done; });
    other.join();
    EXPECT_EQ(done, 200);
}
