// The recursive lock: its owner, its timeouts, and what happens to those who wait when it is
// closed.
#include "Platform/Support/BLocker.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

TEST(BLocker, IsRecursiveAndKnowsItsOwner) {
    BLocker locker;
    EXPECT_EQ(locker.LockingThread(), -1);
    EXPECT_TRUE(locker.Lock());
    EXPECT_EQ(locker.LockWithTimeout(0), B_OK);
    EXPECT_EQ(locker.LockingThread(), find_thread(nullptr));
    EXPECT_TRUE(locker.IsLocked());

    auto isRefused = [&locker] {
        EXPECT_FALSE(locker.IsLocked()) << "it means: by the calling thread";
        EXPECT_EQ(locker.LockWithTimeout(0), B_WOULD_BLOCK);
        EXPECT_EQ(locker.LockWithTimeout(10'000), B_TIMED_OUT);
    };
    std::thread(isRefused).join();
    locker.Unlock();
    std::thread(isRefused).join();
    locker.Unlock();
    EXPECT_FALSE(locker.IsLocked());
    std::thread([&locker] {
        EXPECT_EQ(locker.LockWithTimeout(0), B_OK);
        locker.Unlock();
    }).join();
}

TEST(BLocker, ClosingRefusesAllButTheHolder) {
    BLocker locker;
    locker.Lock();
    std::vector<status_t> results(3, B_OK);
    std::vector<std::thread> waiters;
    for (status_t& result : results)
        waiters.emplace_back([&] { result = locker.LockWithTimeout(B_INFINITE_TIMEOUT); });
    locker.Close();
    for (std::thread& waiter : waiters)
        waiter.join();
    for (const status_t result : results)
        EXPECT_EQ(result, B_BAD_SEM_ID);
    EXPECT_TRUE(locker.Lock());
    locker.Unlock();
    locker.Unlock();
    EXPECT_FALSE(locker.Lock());
}

TEST(BLockerDeathTest, UnlockingWithoutTheLockStops) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    BLocker locker;
    EXPECT_DEATH(locker.Unlock(), "Unlock\\(\\) of a BLocker");
}
