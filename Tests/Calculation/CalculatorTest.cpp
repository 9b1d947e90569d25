#include "Calculation/Calculator.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <optional>
#include <random>

#include "Model/Epochs/Epoch.h"
#include "Platform/Application/BLooper.h"
#include "Tests/Calculation/TestSystem.h"
#include "Tests/Platform/InThreads.h"

namespace {

// Nothing moves; every report is a second later than the one before. On demand the bodies 2 and 1
// collide with body 0.
class Ticker final : public Calculator {
public:
    Ticker(TestSystem* system, BLooper* target = nullptr)
        : Calculator(system->Portal(), system->Consumers(), target) {}

    // Longer batches are cut.
    void SetMost(int32 reports) { most_ = reports; }
    void CollideAt(double time) { collisionTime_ = time; }
    // In each step, the last of them at its end.
    void SetReportsPerStep(int32 reports) { reportsPerStep_ = reports; }

    void Recache() override {
        Calculator::Recache();
        coordinates_.assign(static_cast<size_t>(CountBodies()), 0.0);
        std::iota(coordinates_.begin(), coordinates_.end(), 1.0);
    }
    status_t ArchiveRun(BMessage* /*into*/) const override { return B_NOT_ALLOWED; }
    status_t ResumeRun(const BMessage& /*archive*/) override { return B_BAD_DATA; }
    int64 RunsBegun() const override { return 0; }
    int32 OrderInUse() const override { return 0; }
    double CutoffInUse() const override { return 0.0; }
    void AddWatcher(MotionWatcher* /*watcher*/) override {}
    void SetThreads(int32 /*threads*/) override {}
    void SetRanks(Ranks* /*ranks*/) override {}
    int32 Calculate() override {
        const double* const c = coordinates_.data();
        const BodyArrays arrays = {{c, c, c}, {c, c, c}};
        int32 reports = 0;
        while (reports < std::min(ReportsPerDraw(), most_) && !ShouldStop()) {
            const bool collide = collisionTime_ == TBase();
            if (collide) {
                AddCollision(2, 0);
                AddCollision(1, 0);
                PostCollision();
                collisionTime_.reset();
            }
            if (!collide) ticks_++;
            if (collide)
                ReportContact(TBase(), arrays, 0);
            else
                Report(TBase() + 1.0, arrays, ticks_ % reportsPerStep_ == 0 ? 1 : 0);
            reports++;
        }
        return reports;
    }

private:
    std::optional<double> collisionTime_;
    int32 most_ = std::numeric_limits<int32>::max();
    int32 reportsPerStep_ = 1;
    int64 ticks_ = 0;
    std::vector<double> coordinates_;
};

void AddThreeBodies(TestSystem* system) {
    system->Add(0, 3.0, {0, 0, 0}, {});
    system->Add(1, 2.0, {1, 0, 0}, {});
    system->Add(2, 0.0, {2, 0, 0}, {});
}

void SetReportsPerDraw(Calculator* calculator, int32 reports) {
    // As if the displays had taken so many batches that this becomes the right size.
    const double batches = 80.0 * reports / calculator->ReportsPerDraw();
    calculator->AdjustAnimationSpeed(static_cast<float>(batches), 1'000'000);
    ASSERT_EQ(calculator->ReportsPerDraw(), reports);
}

// None is missing, and none came twice.
void ExpectEverySecond(const RecordingConsumer& consumer) {
    for (size_t i = 0; i < consumer.Times().size(); i++)
        ASSERT_EQ(consumer.Times()[i], static_cast<double>(i + 1));
}

}  // namespace

TEST(Calculator, PausesNestAndWaitForTheConsumers) {
    TestSystem system;
    AddThreeBodies(&system);
    Ticker calculator(&system);
    {
        RecordingConsumer slow(&system, calculator, 3000), fast(&system, calculator);
        calculator.UnPause();
        slow.WaitForDrawing();
        calculator.Pause();
        calculator.Pause();
        EXPECT_EQ(slow.CountDrawn(), slow.CountRead());
        EXPECT_EQ(fast.CountDrawn(), fast.CountRead());
        const int32 read = slow.CountRead();
        EXPECT_EQ(system.GetEpoch()->Time(), slow.Times().back());

        calculator.UnPause();
        snooze(5000);
        EXPECT_EQ(slow.CountRead(), read) << "one pause is left";
        calculator.UnPause();
        slow.WaitForDrawing();
        calculator.Pause();
        EXPECT_GT(slow.CountRead(), read);

        // Both got all there was, in order, whatever their speed.
        EXPECT_EQ(slow.Times(), fast.Times());
        ExpectEverySecond(slow);
        EXPECT_EQ(slow.Preparations(), (std::vector<int32>{100, 100}));
    }
    // A consumer that left took its unit along: nobody is waited for.
    system.Run(&calculator, 1000);
}

TEST(Calculator, ManyThreadsMayPauseAtOnce) {
    TestSystem system;
    AddThreeBodies(&system);
    Ticker calculator(&system);
    SetReportsPerDraw(&calculator, 10);
    RecordingConsumer consumer(&system, calculator, 50);
    calculator.UnPause();
    InThreads(3, [&calculator](int seed) {
        std::mt19937 random(static_cast<uint32>(seed));
        for (int i = 0; i < 300; i++) {
            calculator.Pause();
            if (random() % 4 == 0) snooze(random() % 200);
            calculator.UnPause();
            if (random() % 8 == 0) calculator.SetInternalPause();
            if (random() % 4 == 0) snooze(random() % 200);
        }
    });
    calculator.Pause();
    EXPECT_EQ(consumer.CountDrawn(), consumer.CountRead());
    ExpectEverySecond(consumer);
    const size_t before = consumer.Times().size();
    system.Run(&calculator, 10);
    EXPECT_EQ(consumer.Times().size(), before + 10);
}

TEST(Calculator, AConsumerWithoutWindowIsNotPreparedButServed) {
    TestSystem system;
    Ticker calculator(&system);
    RecordingConsumer consumer(&system, calculator);
    consumer.SetLockable(false);
    system.Run(&calculator, 5);
    EXPECT_TRUE(consumer.Preparations().empty());
    EXPECT_EQ(consumer.Times().size(), 5u);
}

TEST(Calculator, PacingSetsTheSizeOfBatches) {
    TestSystem system;
    AddThreeBodies(&system);
    Ticker calculator(&system);
    const std::pair<float, int32> cases[] = {{73, 100}, {87, 100}, {71, 88}, {4, 10}, {120, 150}};
    for (const auto& [batches, expected] : cases) {
        SetReportsPerDraw(&calculator, 100);
        calculator.AdjustAnimationSpeed(batches, 1'000'000);
        EXPECT_EQ(calculator.ReportsPerDraw(), expected) << batches;
        calculator.AdjustAnimationSpeed(80.0f * 100 / static_cast<float>(expected), 1'000'000);
    }
    SetReportsPerDraw(&calculator, 100);
    calculator.SetUpdatesPerSecond(20);
    calculator.AdjustAnimationSpeed(80, 2'000'000);
    EXPECT_EQ(calculator.ReportsPerDraw(), 200);
    // Beyond all bounds in any direction.
    calculator.SetUpdatesPerSecond(0);
    calculator.AdjustAnimationSpeed(80, 1'000'000);
    EXPECT_EQ(calculator.ReportsPerDraw(), 10);
    // Few updates are measured for longer.
    calculator.SetUpdatesPerSecond(2);
    EXPECT_EQ(calculator.MeasuringInterval(), 2'500'000);
}

// Larger ones would be cut, too: displays show fewer of them instead.
TEST(Calculator, BatchesThatAreCutDoNotGrow) {
    TestSystem system;
    AddThreeBodies(&system);
    Ticker calculator(&system);
    calculator.SetMost(30);
    RecordingConsumer consumer(&system, calculator, 2000);
    calculator.SetUpdatesPerSecond(5);
    EXPECT_EQ(calculator.BatchesPerUpdate(), 1);
    calculator.UnPause();
    while (calculator.BatchesPerUpdate() == 1 && calculator.ReportsPerDraw() == 100)
        consumer.WaitForDrawing();
    calculator.Pause();
    EXPECT_EQ(calculator.ReportsPerDraw(), 100);
    EXPECT_GT(calculator.BatchesPerUpdate(), 3);
}

TEST(Calculator, GrowingBatchesKeepWhatTheyHold) {
    TestSystem system;
    AddThreeBodies(&system);
    Ticker calculator(&system);
    system.Run(&calculator, 100);
    SetReportsPerDraw(&calculator, 150);
    EXPECT_EQ(calculator.TRep()[99], 100.0);
    for (int i = 0; i < 9; i++) {
        EXPECT_EQ(calculator.RRep()[891 + i], 1 + i / 3);  // one value for each body
        EXPECT_EQ(calculator.VRep()[891 + i], 1 + i / 3);
    }
}

TEST(ReportBatch, HasABoundAndGivesBackWhatAnotherRunDoesNotNeed) {
    ReportBatch batch;
    batch.SetSize(1000, 1'000'000);
    EXPECT_EQ(batch.Room(), 16'000'000 / (8 * 6001));
    batch.SetSize(1000, 10);
    EXPECT_EQ(batch.Room(), 10);
    EXPECT_GT(batch.PositionCapacity(), 3 * 1000 * 300u) << "a run goes on";
    batch.Restart(1000, 10);
    EXPECT_EQ(batch.PositionCapacity(), 3 * 1000 * 10u);
    EXPECT_EQ(batch.TimeCapacity(), 10u);
    // However many bodies there are.
    batch.SetSize(400'000, 100);
    EXPECT_EQ(batch.Room(), 1);
}

TEST(Calculator, RunLimitIsExactWhateverTheBatches) {
    constexpr double kNever = std::numeric_limits<double>::infinity();
    for (int32 reportsPerDraw : {10, 37, 100, 1000}) {
        TestSystem system;
        AddThreeBodies(&system);
        Ticker calculator(&system);
        SetReportsPerDraw(&calculator, reportsPerDraw);
        RecordingConsumer consumer(&system, calculator);
        const auto run = [&](int64 reports, double time) {
            const size_t before = consumer.Times().size();
            calculator.SetRunLimit(reports, time);
            system.RunUntilParked(&calculator);
            return static_cast<int32>(consumer.Times().size() - before);
        };
        EXPECT_EQ(run(370, kNever), 370);
        EXPECT_EQ(run(1, kNever), 1);
        EXPECT_EQ(run(0, 400.5), 30) << "371 ... 401";
        EXPECT_EQ(run(0, 450.0), 49);
        EXPECT_EQ(run(0, 3.0), 1) << "past it already: the first report";
        EXPECT_EQ(run(10, 455.0), 4);
        EXPECT_EQ(run(3, 1000.0), 3);
        EXPECT_EQ(system.GetEpoch()->Time(), 458.0);

        // A collision on the way makes a report, but neither counts nor restarts the count.
        calculator.CollideAt(500.0);
        EXPECT_EQ(run(100, kNever), 43);
        system.RunUntilParked(&calculator);
        EXPECT_EQ(consumer.Times().size(), 559u);
        EXPECT_EQ(system.GetEpoch()->Time(), 558.0);
        EXPECT_EQ(calculator.StepsTaken(), 558);

        // Where a step holds several reports the limit is that of the steps.
        calculator.SetReportsPerStep(3);
        EXPECT_EQ(run(10, kNever), 30);
        EXPECT_EQ(run(10, 600.0), 12);
        EXPECT_EQ(calculator.StepsTaken(), 572);

        // The limit is over: the next run has none.
        calculator.UnPause();
        for (int i = 0; i < 3; i++)
            consumer.WaitForDrawing();
        calculator.Pause();
        EXPECT_GT(system.GetEpoch()->Time(), 600.0);
    }
}

TEST(Calculator, AFullPortDoesNotHoldUpAPause) {
    TestSystem system;
    AddThreeBodies(&system);
    auto* const looper = new BLooper("full");  // never runs: its port fills
    while (looper->PostMessage(FourCC("fill"), looper) == B_OK) {
    }
    {
        Ticker calculator(&system, looper);
        calculator.CollideAt(5.0);
        calculator.UnPause();
        for (double time = 0.0; time != 5.0;) {
            system.Portal()->ReadLock();
            time = system.GetEpoch()->Time();
            system.Portal()->ReadUnlock();
        }
        calculator.Pause();
        EXPECT_EQ(system.GetEpoch()->Time(), 5.0);
        system.Run(&calculator, 10);
        EXPECT_EQ(system.GetEpoch()->Time(), 15.0);
    }
    looper->Quit();
}
