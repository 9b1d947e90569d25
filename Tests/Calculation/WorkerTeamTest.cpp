#include "Calculation/WorkerTeam.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <memory>
#include <thread>
#include <vector>

namespace {

// Portions of work that count how often each was done.
struct Portions {
    std::atomic<int32> next{0};
    std::vector<int32> done;

    static void Do(void* argument) {
        auto* portions = static_cast<Portions*>(argument);
        const auto count = static_cast<int32>(portions->done.size());
        for (int32 i; (i = portions->next.fetch_add(1)) < count;)
            portions->done[i]++;
    }
};

// Returns when it has been entered twice: not without a helper.
void Meet(void* argument) {
    auto* entered = static_cast<std::atomic<int32>*>(argument);
    entered->fetch_add(1);
    while (*entered < 2)
        std::this_thread::yield();
}

// Of all threads.
double ProcessSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace

TEST(WorkerTeam, DoesEachPortionOnceBeforeRunReturns) {
    for (int32 helpers : {0, 1, 3}) {
        WorkerTeam team(helpers);
        for (int32 round = 0; round < 3000; round++) {
            // Gone when the round is over: a helper that still looked at it would be seen by the
            // sanitizers.
            auto portions = std::make_unique<Portions>();
            portions->done.resize(round % 7);
            team.Run(Portions::Do, portions.get());
            for (int32 done : portions->done)
                ASSERT_EQ(done, 1) << "round " << round;
        }
    }
}

TEST(WorkerTeam, HelpsAwakeAndAsleep) {
    WorkerTeam team(2);
    for (int32 round = 0; round < 200; round++) {
        std::atomic<int32> entered{0};
        team.Run(Meet, &entered);
        if (round % 50 != 0) continue;
        const double before = ProcessSeconds();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_LT(ProcessSeconds() - before, 0.02) << "idle helpers keep running";
    }
}
