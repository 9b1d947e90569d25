// Runs that end by themselves: where numbers would leave their range, where time stands still, and
// where nothing interacts.
#include "Calculation/RunEnding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <future>
#include <limits>
#include <new>

#include "Calculation/CollisionMailbox.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BLooper.h"
#include "Tests/Calculation/TaylorFixtures.h"
#include "Tests/Platform/Allocations.h"

namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();
// Reports at which a run stops that does not end by itself.
constexpr int64 kTooMany = 300'000;

// Stands for the window that the calculator tells why it has stopped.
class EndingLooper final : public BLooper {
public:
    void MessageReceived(BMessage* message) override {
        EXPECT_NE(message->what, CollisionMailbox::kCollisionMessage);
        if (const auto ending = RunEnding::From(*message)) ending_.set_value(*ending);
    }
    // What the calculator has posted before it parked; none in vain.
    RunEnding Wait() {
        std::future<RunEnding> ending = ending_.get_future();
        if (ending.wait_for(std::chrono::seconds(10)) == std::future_status::ready)
            return ending.get();
        ADD_FAILURE() << "the run did not end by itself";
        return {};
    }

private:
    std::promise<RunEnding> ending_;
};

struct RunEndingTest : testing::Test {
    ~RunEndingTest() override {
        looper->Lock();
        looper->Quit();
    }
    // Two points without size, the lighter one without mass, on the x axis and at rest.
    void AddFallingPoints(double distance) {
        system.Add(3, 1e20, {}, {});
        system.Add(8, 0.0, {distance, 0, 0}, {});
    }
    RunEnding Run(double until = kNever) {
        calculator.SetRunLimit(kTooMany, until);
        system.RunUntilParked(&calculator);
        return looper->Wait();
    }
    // The model and what is saved with it are those of the last report.
    void ExpectLastReportIsKept(const RunEnding& ending) {
        EXPECT_EQ(ending.time, system.GetEpoch()->Time());
        if (!consumer.Times().empty()) {
            EXPECT_EQ(ending.time, consumer.Times().back());
            EXPECT_EQ(system.Find(8)->Position().x, *(consumer.Positions().end() - 3));
            EXPECT_EQ(system.Find(8)->Velocity().x, *(consumer.Velocities().end() - 3));
        }
        const BMessage state = ArchiveOf(calculator);
        for (const std::vector<double>& numbers :
             {consumer.Times(), consumer.Positions(), consumer.Velocities(), Doubles(state, "DelR"),
              Doubles(state, "DelV")})
            EXPECT_TRUE(std::all_of(numbers.begin(), numbers.end(),
                                    [](double number) { return std::isfinite(number); }));
    }
    void ExpectPairApart(const RunEnding& ending) {
        ASSERT_TRUE(ending.pair);
        EXPECT_EQ(ending.pair->later, 8);
        EXPECT_EQ(ending.pair->earlier, 3);
        EXPECT_EQ(ending.pair->distance, system.Find(8)->Position().x);
    }

    EndingLooper* const looper = [] {
        auto* const running = new EndingLooper;
        running->Run();
        return running;
    }();
    TestSystem system{4, 1e-5};
    TaylorCalculator calculator{system.Portal(), system.Consumers(), looper};
    RecordingConsumer consumer{&system, calculator};
};

TEST_F(RunEndingTest, GoesBackToTheLastFiniteReport) {
    AddFallingPoints(1e-53);
    const RunEnding ending = Run();
    EXPECT_EQ(ending.reason, RunEnding::Reason::kNotFinite);
    EXPECT_GT(consumer.Times().size(), 10u);
    ExpectLastReportIsKept(ending);
    ExpectPairApart(ending);
}

TEST_F(RunEndingTest, LeavesBodiesAloneWhoseFirstStepWouldNotBeFinite) {
    AddFallingPoints(1e-60);
    const RunEnding ending = Run();
    EXPECT_EQ(ending.reason, RunEnding::Reason::kNotFinite);
    EXPECT_TRUE(consumer.Times().empty());
    EXPECT_TRUE(system.Find(8)->Position() == (ThreeVector{1e-60, 0, 0}));
    ExpectLastReportIsKept(ending);
    ExpectPairApart(ending);
}

TEST_F(RunEndingTest, TellsWhereTimeStandsStill) {
    AddFallingPoints(1e11);
    const RunEnding ending = Run();
    EXPECT_EQ(ending.reason, RunEnding::Reason::kTimeStands);
    ExpectLastReportIsKept(ending);
    ExpectPairApart(ending);
    // Of a fall that takes so long to the last bit nothing is missing.
    const double fall = std::acos(-1.0) / 2.0 * std::sqrt(1e33 / 2e20);
    EXPECT_NEAR(ending.time, fall, 1e-3 * fall);
}

TEST_F(RunEndingTest, WhatDoesNotInteractGoesStraightToTheTimeAskedFor) {
    const ThreeVector velocity{3, -4, 0};
    system.GetEpoch()->SetTime(50.0);
    Body* const body = system.Add(0, 0.0, {1, 1, 1}, velocity);
    system.Add(1, 0.0, {1, 1, 1}, {});  // at the same place: massless bodies do not collide
    const RunEnding ending = Run(1e7);
    EXPECT_EQ(ending.reason, RunEnding::Reason::kNothingInteracts);
    EXPECT_FALSE(ending.pair);
    EXPECT_EQ(consumer.Times(), std::vector<double>{1e7});
    EXPECT_EQ(system.GetEpoch()->Time(), 1e7);
    EXPECT_TRUE(body->Position() == (ThreeVector{1, 1, 1}) + (1e7 - 50.0) * velocity);
    EXPECT_TRUE(body->Velocity() == velocity);
    EXPECT_EQ(*(consumer.Positions().end() - 6), body->Position().x);
}

// Neither for the batches, nor for what takes them.
TEST_F(RunEndingTest, MemoryThatIsLackingEndsTheRunWhereItIs) {
    AddFallingPoints(1e11);
    constexpr std::size_t kAllButBatches = 3000;  // bytes
    RefuseAllocationsFrom(kAllButBatches);
    const RunEnding ending = Run();
    RefuseAllocationsFrom(SIZE_MAX);
    EXPECT_EQ(ending.reason, RunEnding::Reason::kNoMemory);
    EXPECT_EQ(ending.time, 0.0);
    EXPECT_TRUE(consumer.Times().empty());
    EXPECT_EQ(system.Find(8)->Position().x, 1e11);

    // With memory it runs as if nothing had been.
    system.Run(&calculator, 150);
    EXPECT_EQ(consumer.Times().size(), 150u);
    TestSystem other{4, 1e-5};
    other.Add(3, 1e20, {}, {});
    other.Add(8, 0.0, {1e11, 0, 0}, {});
    const auto undisturbed = MakeCalculator(&other);
    other.Run(undisturbed.get(), 150);
    EXPECT_EQ(other.GetEpoch()->Time(), system.GetEpoch()->Time());
    EXPECT_EQ(other.Find(8)->Position(), system.Find(8)->Position());
}

TEST_F(RunEndingTest, AConsumerWithoutMemoryEndsTheRunAndTheOthersGetTheBatch) {
    class Helpless final : public RecordingConsumer {
    public:
        using RecordingConsumer::RecordingConsumer;
        void ReadData(int32, double*, double*, double*) override { throw std::bad_alloc(); }
    };
    AddFallingPoints(1e11);
    const Helpless helpless(&system, calculator);
    const RunEnding ending = Run();
    EXPECT_EQ(ending.reason, RunEnding::Reason::kNoMemory);
    ASSERT_FALSE(consumer.Times().empty());
    ExpectLastReportIsKept(ending);
}

TEST_F(RunEndingTest, WhatDoesNotInteractParksWhereNoTimeIsAskedFor) {
    // A rate that is too small for the numbers, and none at all.
    system.Add(0, 1e20, {}, {});
    system.Add(1, 1e20, {1e50, 0, 0}, {});
    EXPECT_EQ(Run().reason, RunEnding::Reason::kNothingInteracts);
    EXPECT_TRUE(consumer.Times().empty());
    EXPECT_EQ(system.GetEpoch()->Time(), 0.0);

    TestSystem empty;
    const auto alone = MakeCalculator(&empty);
    alone->SetRunLimit(0, 7.0);
    empty.RunUntilParked(alone.get());
    EXPECT_EQ(empty.GetEpoch()->Time(), 7.0);
}

}  // namespace
