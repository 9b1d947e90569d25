// Spawned threads: their start, end, result, names and identifiers; the debugger stop.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <semaphore>
#include <set>
#include <thread>

#include "Platform/Kernel/OS.h"

namespace {

struct Observed {
    std::atomic<bool> hasRun{false};
    thread_id self = 0;
    char systemName[32] = {};
    std::binary_semaphore started{0};
    std::binary_semaphore mayEnd{0};
};

int32 Observe(void* argument) {
    auto* const seen = static_cast<Observed*>(argument);
    seen->hasRun = true;
    seen->self = find_thread(nullptr);
    pthread_getname_np(pthread_self(), seen->systemName, sizeof seen->systemName);
    seen->started.release();
    seen->mayEnd.acquire();
    return 77;
}

int NiceValue() {
    return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
}

int32 ReturnNiceValue(void*) {
    return NiceValue();
}

int32 ReturnArgument(void* argument) {
    return *static_cast<int32*>(argument);
}

}  // namespace

TEST(Thread, WaitsForResumeAndGivesItsResult) {
    constexpr const char* kName = "A name of more than 15 letters";
    Observed seen;
    const thread_id thread = spawn_thread(Observe, kName, B_LOW_PRIORITY, &seen);
    ASSERT_GT(thread, 0);
    EXPECT_FALSE(seen.hasRun);
    EXPECT_EQ(resume_thread(thread), B_OK);
    seen.started.acquire();
    EXPECT_EQ(resume_thread(thread), B_BAD_THREAD_STATE);

    EXPECT_EQ(seen.self, thread);
    EXPECT_STREQ(seen.systemName, "A name of more ");
    EXPECT_EQ(find_thread(kName), thread);

    seen.mayEnd.release();
    status_t result = B_OK;
    EXPECT_EQ(wait_for_thread(thread, &result), B_OK);
    EXPECT_EQ(result, 77);
    EXPECT_EQ(find_thread(kName), B_NAME_NOT_FOUND);
    EXPECT_EQ(wait_for_thread(thread, &result), B_BAD_THREAD_ID);
    EXPECT_EQ(resume_thread(thread), B_BAD_THREAD_ID);
}

// Whoever may raise a priority must not do so by accident.
TEST(Thread, PrioritiesAreOnlyLowered) {
    for (const int former : {NiceValue(), 12}) {
        std::thread([former] {
            ASSERT_EQ(setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), former), 0);
            for (const auto& [priority, lower] : {std::pair{B_LOW_PRIORITY, 5},
                                                  {B_NORMAL_PRIORITY, 0},
                                                  {B_NORMAL_PRIORITY + 5, 0}}) {
                status_t nice = 0;
                wait_for_thread(spawn_thread(ReturnNiceValue, "nice", priority, nullptr), &nice);
                EXPECT_EQ(nice, former + lower);
            }
        }).join();
    }
}

TEST(Thread, IdentifiersAreNeverUsedTwice) {
    std::set<thread_id> identifiers{find_thread(nullptr)};
    for (int32 i = 0; i < 20; i++) {
        const thread_id spawned = spawn_thread(ReturnArgument, "short", B_NORMAL_PRIORITY, &i);
        status_t result = B_ERROR;
        EXPECT_EQ(wait_for_thread(spawned, &result), B_OK);
        EXPECT_EQ(result, i);
        thread_id foreign = 0;  // of a thread that the kit did not start
        std::thread([&] { foreign = find_thread(nullptr); }).join();
        EXPECT_TRUE(identifiers.insert(spawned).second);
        EXPECT_TRUE(identifiers.insert(foreign).second);
    }
}

TEST(DebuggerDeathTest, PrintsItsTextAndStops) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(debugger("Found a mistake."), "Found a mistake\\.");
}
