#include "Calculation/TaylorCalculator.h"

#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <limits>
#include <random>

#include "Calculation/StepControl.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BLooper.h"
#include "Tests/Calculation/ScalarTaylor.h"
#include "Tests/Calculation/TaylorFixtures.h"
#include "Tests/Platform/Allocations.h"

namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();

// A calculator with a consumer that only looks at the times of each batch.
class ReadHook : public ReportConsumer {
public:
    using Function = std::function<void(int32 count, const double* times)>;

    ReadHook(TestSystem* system, Function read)
        : read_(std::move(read)), calculator_(MakeCalculator(system)) {
        system->consumers.push_back(this);
        ReadOk();
    }
    TaylorCalculator* GetCalculator() { return calculator_.get(); }

    void PrepareForGo(int32) override {}
    void ReadData(int32 count, double* times, double*, double*) override { read_(count, times); }
    void ReadOk() override { release_ben(calculator_->WriteOk()); }

private:
    const Function read_;
    const std::unique_ptr<TaylorCalculator> calculator_;
};

// Stands for the window that a calculator posts its collisions to, once.
class CollisionLooper final : public BLooper {
public:
    // The later and the earlier body of each.
    using Pairs = std::vector<std::pair<int64, int64>>;

    void MessageReceived(BMessage* message) override {
        Pairs pairs;
        int64 p, q;
        for (int32 i = 0; message->FindInt64("p", i, &p) == B_OK; i++)
            if (message->FindInt64("q", i, &q) == B_OK) pairs.emplace_back(p, q);
        EXPECT_EQ(message->what, FourCC("clsn"));
        pairs_.set_value(pairs);
    }
    Pairs WaitForCollisions() { return pairs_.get_future().get(); }

private:
    std::promise<Pairs> pairs_;
};

}  // namespace

TEST(TaylorCalculator, StepsAreThoseOfTheScalarReference) {
    for (int32 order : {2, 3, 4}) {
        SCOPED_TRACE(order);
        // Coarse, so that parts are promoted often.
        const double cutoff = order == 4 ? 1e-5 : 1e-4;
        const PairWalk planets = Planets(9, 6);
        ScalarTaylor reference(planets, order, cutoff);
        TestSystem system(planets, order, cutoff);
        const auto calculator = MakeCalculator(&system);
        const int32 reports = order == 4 ? 1000 : 40;
        system.Run(calculator.get(), reports);
        for (int32 i = 0; i < reports; i++)
            reference.Step();
        EXPECT_EQ(system.GetEpoch()->Time(), reference.Time());
        EXPECT_GT(reference.CountPromotions(), order == 4 ? 3 : -1);
        for (size_t i = 0; i < planets.bodies.size(); i++) {
            const auto& [x, y, z] = reference.System().bodies[i].position;
            const auto& [vx, vy, vz] = reference.System().bodies[i].velocity;
            const Body* const body = system.Find(static_cast<int64>(i));
            ASSERT_TRUE(body->Position() == (ThreeVector{x, y, z})) << i;
            ASSERT_TRUE(body->Velocity() == (ThreeVector{vx, vy, vz})) << i;
        }
    }
}

TEST(TaylorCalculator, AnyOrderIsTakenAsTheNearestThereIs) {
    const PairWalk planets = Planets(4, 4);
    for (const auto& [stored, used] : {std::pair{-7, 2}, {1, 2}, {5, 8}, {13, 16}, {100, 24}}) {
        TestSystem system(planets, stored, 1e-6), expected(planets, used, 1e-6);
        system.Run(MakeCalculator(&system).get(), 20);
        expected.Run(MakeCalculator(&expected).get(), 20);
        EXPECT_EQ(system.GetEpoch()->Time(), expected.GetEpoch()->Time());
        EXPECT_TRUE(system.Find(3)->Position() == expected.Find(3)->Position());
    }
}

TEST(TaylorCalculator, ResultsDependNeitherOnBatchesNorOnConsumersNorOnThreads) {
    const PairWalk planets = Planets(60, 60);  // enough for a second thread to be worth it
    constexpr int32 kReports = 3000;
    struct Outcome {
        std::vector<double> times, positions, velocities;
        BMessage state;
        bool operator==(const Outcome&) const = default;
    };
    const auto run = [&](int32 reportsPerDraw, int32 threads, bigtime_t drawTime) {
        TestSystem system(planets, 4, 1e-6);
        const auto calculator = MakeCalculator(&system, threads);
        calculator->AdjustAnimationSpeed(static_cast<float>(0.8 * reportsPerDraw), 1'000'000);
        EXPECT_EQ(calculator->ReportsPerDraw(), reportsPerDraw);
        RecordingConsumer consumer(&system, *calculator, drawTime), other(&system, *calculator, 0);
        system.Run(calculator.get(), kReports);
        EXPECT_EQ(consumer.Times(), other.Times());
        return Outcome{consumer.Times(), consumer.Positions(), consumer.Velocities(),
                       ArchiveOf(*calculator)};
    };
    const Outcome expected = run(100, 1, 0);
    ASSERT_EQ(expected.times.size(), static_cast<size_t>(kReports));
    EXPECT_TRUE(run(10, 1, 0) == expected);
    EXPECT_TRUE(run(2999, 1, 0) == expected);
    EXPECT_TRUE(run(137, 2, 2000) == expected);
}

// The consumer is so slow that the pacing changes the size of the batches during the run.
TEST(TaylorCalculator, PacingDoesNotChangeResults) {
    const PairWalk planets = Planets(3, 3);
    TestSystem paced(planets, 4, 1e-6), plain(planets, 4, 1e-6);
    const auto calculator = MakeCalculator(&paced);
    RecordingConsumer consumer(&paced, *calculator, 1000);
    calculator->SetUpdatesPerSecond(200);
    calculator->UnPause();
    while (calculator->ReportsPerDraw() == 100)
        consumer.WaitForDrawing();
    for (int i = 0; i < 5; i++)
        consumer.WaitForDrawing();
    calculator->Pause();
    EXPECT_NE(calculator->ReportsPerDraw(), 100);  // fewer on a slow machine

    const auto reference = MakeCalculator(&plain);
    plain.Run(reference.get(), static_cast<int64>(consumer.Times().size()));
    EXPECT_EQ(plain.GetEpoch()->Time(), paced.GetEpoch()->Time());
    EXPECT_EQ(plain.GetEpoch()->Time(), consumer.Times().back());
    EXPECT_TRUE(ArchiveOf(*reference) == ArchiveOf(*calculator));
}

TEST(TaylorCalculator, NothingIsAllocatedFromBatchToBatch) {
    int32 batches = 0;
    int64 early = 0, last = 0;
    TestSystem system(Planets(30, 20), 4, 1e-6);
    ReadHook hook(&system, [&](int32, const double*) {
        last = CountAllocations();
        if (++batches == 2) early = last;
    });
    system.Run(hook.GetCalculator(), 2000);
    EXPECT_GE(batches, 20);
    EXPECT_EQ(last, early);
}

// A step of so many bodies takes milliseconds, on any machine; so the batch ends long before it is
// full. What else the machine does makes it end earlier.
TEST(TaylorCalculator, ABatchIsCutAfterATenthOfASecond) {
    constexpr int32 kBodies = 5000;
    constexpr int32 kRoom = 16'000'000 / (8 * (6 * kBodies + 1));
    TestSystem system(Planets(kBodies, kBodies), 4, 1e-6);
    int32 first = 0;
    TaylorCalculator* calculator = nullptr;
    ReadHook hook(&system, [&](int32 count, const double*) {
        if (first == 0) first = count;
        calculator->SetInternalPause();
    });
    calculator = hook.GetCalculator();
    calculator->SetThreads(1);
    system.RunUntilParked(calculator);
    EXPECT_GE(first, 1);
    EXPECT_LT(first, kRoom / 2);
}

// So few reports are handed over twenty times a second. What else the machine does makes batches
// smaller, and the shortest time of a report tells what it needs.
TEST(TaylorCalculator, ABatchOfFewReportsIsCutEarlier) {
    constexpr int32 kBodies = 2000;
    constexpr int32 kBatches = 6;
    TestSystem system(Planets(kBodies, kBodies), 4, 1e-6);
    std::vector<int32> counts;
    TaylorCalculator* calculator = nullptr;
    bigtime_t before = 0;
    double shortest = kNever;  // us of a report
    ReadHook hook(&system, [&](int32 count, const double*) {
        const bigtime_t now = system_time();
        if (before > 0 && count > 0)
            shortest = std::min(shortest, static_cast<double>(now - before) / count);
        before = now;
        counts.push_back(count);
        if (counts.size() == kBatches) calculator->SetInternalPause();
    });
    calculator = hook.GetCalculator();
    calculator->SetThreads(1);
    system.RunUntilParked(calculator);
    for (const int32 count : counts)
        EXPECT_TRUE(count <= 1 || count * shortest < 60'000.0) << count << " of " << shortest;
}

// However few updates of the screen are wanted.
TEST(TaylorCalculator, ABatchIsBounded) {
    for (const int32 bodies : {2, 90}) {
        int64 most = 0;
        TestSystem system(Planets(bodies, 2), 4, 1e-6);
        ReadHook hook(&system,
                      [&](int32 count, const double*) { most = std::max(most, int64{count}); });
        hook.GetCalculator()->AdjustAnimationSpeed(80e6f, 1'000'000);
        EXPECT_EQ(hook.GetCalculator()->ReportsPerDraw(), 100'000'000);
        system.Run(hook.GetCalculator(), bodies == 2 ? 400'000 : 20'000);
        EXPECT_LE(most * (6 * bodies + 1) * 8, 16'000'000);
        EXPECT_GT(most, 10) << "more than the least that is ever asked for; how many, time decides";
    }
}

TEST(TaylorCalculator, BodiesThatTouchStopTheRunBeforeTheStep) {
    TestSystem system;
    system.GetEpoch()->SetTime(77.0);
    system.Add(4, 4e14, {0, 0, 0}, {1, 2, 3}, 6e6);
    system.Add(9, 1e14, {1e7, 0, 0}, {}, 4e6);
    system.Add(5, 2e14, {5e6, 0, 0}, {}, 1e6);
    system.Add(1, 0.0, {1e9, 0, 0}, {}, 1.0);
    auto* const looper = new CollisionLooper;
    looper->Run();
    {
        TaylorCalculator calculator(system.Portal(), system.Consumers(), looper);
        RecordingConsumer consumer(&system, calculator);
        system.RunUntilParked(&calculator);
        const CollisionLooper::Pairs expected = {{9, 5}, {9, 4}, {5, 4}};
        EXPECT_EQ(looper->WaitForCollisions(), expected);
        EXPECT_EQ(consumer.Times(), (std::vector<double>{77.0}));
        EXPECT_EQ(consumer.Positions(),
                  (std::vector<double>{0, 0, 0, 5e6, 0, 0, 1e7, 0, 0, 1e9, 0, 0}));
        EXPECT_EQ(consumer.Velocities(), (std::vector<double>{1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
        EXPECT_EQ(Iteration(ArchiveOf(calculator)), 0);
        EXPECT_TRUE(system.Find(4)->Position() == ThreeVector{});
    }
    looper->Lock();
    looper->Quit();
}

TEST(TaylorCalculator, TimeIsThatOfTheRunUnlessSomebodySetsIt) {
    TestSystem system(Planets(2, 2), 4, 1e-6);
    std::vector<double> all;
    ReadHook hook(&system, [&](int32 count, const double* times) {
        all.insert(all.end(), times, times + count);
        if (all.size() != 200) return;
        system.Portal()->WriteLock();
        system.GetEpoch()->SetTime(5e9);
        system.Portal()->WriteUnlock();
    });
    system.Run(hook.GetCalculator(), 300);
    // The steps are added up apart from the start, which is large and would round each of them.
    double elapsed = 0.0;
    for (size_t i = 200; i < 300; i++) {
        elapsed += all[0];
        ASSERT_EQ(all[i], 5e9 + elapsed);
    }
}

TEST(TaylorCalculator, APauseAbandonsAStepHalfway) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> unit(-1, 1);
    TestSystem system;
    for (int64 i = 0; i < 3000; i++)
        system.Add(i, 1e15, {1e12 * unit(random), 1e12 * unit(random), 1e12 * unit(random)}, {});
    const auto calculator = MakeCalculator(&system, 2);
    RecordingConsumer consumer(&system, *calculator);
    const ThreeVector before = system.Find(17)->Position();
    for (int i = 0; i < 5; i++) {
        calculator->UnPause();
        snooze(2000);
        calculator->Pause();
    }
    // Bodies, time and iteration count agree on how many steps there were, if any.
    const auto steps = static_cast<int32>(consumer.Times().size());
    EXPECT_EQ(Iteration(ArchiveOf(*calculator)), steps);
    EXPECT_EQ(system.Find(17)->Position() == before, steps == 0);
    EXPECT_EQ(system.GetEpoch()->Time(), steps == 0 ? 0.0 : consumer.Times().back());
}

TEST(StepControl, EndsWithAnyRateAndCutoff) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    for (double cutoff : {9.9e-4, 1e-11, 1e-300, 5e-324}) {
        for (int32 order : {2, 3, 4}) {
            StepControl control;
            control.Restart(cutoff, order);
            EXPECT_GT(control.PromotionInterval(), 0);
            for (double rate : {kNever, 1e-100, kNaN, 1e300, 1.0}) {
                control.Adapt(rate);
                EXPECT_GT(control.Powers().h, 0.0) << cutoff << " " << order << " " << rate;
                EXPECT_LT(control.Powers().h, kNever);
            }
        }
    }
    StepControl control;
    control.Restart(1e-11, 4);
    EXPECT_EQ(control.PromotionInterval(), 1191);
}
