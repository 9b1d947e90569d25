// Counting semaphores: units taken at once and in turn, timeouts, deletion.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "Platform/Kernel/OS.h"
#include "Tests/Platform/InThreads.h"

namespace {

constexpr bigtime_t kLong = 60'000'000;
constexpr bigtime_t kShort = 20'000;

int32 CountOf(sem_id sem) {
    int32 count = 0;
    EXPECT_EQ(get_sem_count(sem, &count), B_OK);
    return count;
}

// A thread that waits shows in the count, and nowhere else.
void AwaitCount(sem_id sem, int32 wanted) {
    while (CountOf(sem) != wanted)
        std::this_thread::yield();
}

status_t Acquire(sem_id sem, int32 count, bigtime_t timeout) {
    return acquire_sem_etc(sem, count, B_RELATIVE_TIMEOUT, timeout);
}

}  // namespace

TEST(Semaphore, RefusesBadArgumentsAndStaleIdentifiers) {
    EXPECT_EQ(create_sem(-1, "negative"), B_BAD_VALUE);
    const sem_id sem = create_sem(1, "first");
    EXPECT_EQ(acquire_sem_etc(sem, 0, 0, 0), B_BAD_VALUE);
    EXPECT_EQ(release_sem_etc(sem, 0, 0), B_BAD_VALUE);
    EXPECT_EQ(CountOf(sem), 1);
    EXPECT_EQ(delete_sem(sem), B_OK);
    const sem_id next = create_sem(1, "second");
    EXPECT_NE(next, sem);
    EXPECT_EQ(acquire_sem(sem), B_BAD_SEM_ID);
    EXPECT_EQ(release_sem(sem), B_BAD_SEM_ID);
    EXPECT_EQ(delete_sem(sem), B_BAD_SEM_ID);
    EXPECT_EQ(delete_sem(next), B_OK);
}

TEST(Semaphore, TakesAllUnitsOrNone) {
    const sem_id sem = create_sem(2, "two units");
    EXPECT_EQ(Acquire(sem, 3, -5), B_WOULD_BLOCK);
    const bigtime_t start = system_time();
    EXPECT_EQ(Acquire(sem, 3, kShort), B_TIMED_OUT);
    EXPECT_GE(system_time() - start, kShort);
    EXPECT_EQ(CountOf(sem), 2);
    EXPECT_EQ(Acquire(sem, 2, 0), B_OK);
    EXPECT_EQ(CountOf(sem), 0);
    EXPECT_EQ(release_sem_etc(sem, 3, B_DO_NOT_RESCHEDULE), B_OK);
    // The timeout counts only with its flag; the longest one does not overflow.
    EXPECT_EQ(acquire_sem_etc(sem, 2, 0, 0), B_OK);
    EXPECT_EQ(Acquire(sem, 1, B_INFINITE_TIMEOUT), B_OK);
    delete_sem(sem);
}

TEST(Semaphore, LargeRequestIsNotOvertaken) {
    const sem_id sem = create_sem(0, "queue");
    status_t large = B_ERROR;
    status_t small = B_ERROR;
    std::thread first([&] { large = Acquire(sem, 3, kLong); });
    AwaitCount(sem, -3);
    std::thread second([&] { small = Acquire(sem, 1, kLong); });
    AwaitCount(sem, -4);

    release_sem(sem);
    EXPECT_EQ(Acquire(sem, 1, 0), B_WOULD_BLOCK) << "the free unit belongs to those who wait";
    release_sem_etc(sem, 2, 0);
    first.join();
    EXPECT_EQ(large, B_OK);
    EXPECT_EQ(CountOf(sem), -1) << "the small request still waits";
    release_sem(sem);
    EXPECT_EQ(Acquire(sem, 1, 0), B_WOULD_BLOCK) << "a unit is handed over, not put up for grabs";
    second.join();
    EXPECT_EQ(small, B_OK);
    delete_sem(sem);
}

TEST(Semaphore, RequestThatGivesUpLetsTheNextOnesPass) {
    const sem_id sem = create_sem(1, "queue");
    status_t large = B_ERROR;
    status_t small = B_ERROR;
    std::thread first([&] { large = Acquire(sem, 3, 10 * kShort); });
    AwaitCount(sem, -2);
    std::thread second([&] { small = Acquire(sem, 1, kLong); });
    first.join();
    second.join();
    EXPECT_EQ(large, B_TIMED_OUT);
    EXPECT_EQ(small, B_OK);
    EXPECT_EQ(CountOf(sem), 0);
    delete_sem(sem);
}

TEST(Semaphore, DeletionWakesAllWaiters) {
    const sem_id sem = create_sem(0, "doomed");
    std::vector<status_t> results(4, B_OK);
    std::vector<std::thread> waiters;
    for (status_t& result : results)
        waiters.emplace_back([&result, sem] { result = acquire_sem(sem); });
    AwaitCount(sem, -4);
    EXPECT_EQ(delete_sem(sem), B_OK);
    for (std::thread& waiter : waiters)
        waiter.join();
    for (const status_t result : results)
        EXPECT_EQ(result, B_BAD_SEM_ID);
}

TEST(Semaphore, ManyThreadsLoseNoUnit) {
    constexpr int32 kRounds = 20000;
    const sem_id sem = create_sem(3, "shared");
    std::atomic<int32> taken{0};
    std::atomic<int32> most{0};
    InThreads(3, [&](int number) {
        const int32 units = number + 1;
        for (int32 round = 0; round < kRounds; round++) {
            // Now and then a request that may run out of time in the middle of it all.
            const bigtime_t timeout = round % 8 == 0 ? 1 : kLong;
            if (Acquire(sem, units, timeout) != B_OK) continue;
            const int32 now = taken += units;
            for (int32 seen = most; seen < now && !most.compare_exchange_weak(seen, now);) {
            }
            taken -= units;
            release_sem_etc(sem, units, 0);
        }
    });
    EXPECT_LE(most, 3);
    EXPECT_EQ(CountOf(sem), 3);
    delete_sem(sem);
}
