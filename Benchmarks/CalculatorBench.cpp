// Whole steps of the calculator with their reports: against plain scalar code, the share of the
// report, and how soon a pause takes effect.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <string>
#include <thread>

#include "BenchTable.h"
#include "Benchmarks.h"
#include "Body.h"
#include "ScalarTaylor.h"
#include "Stopwatch.h"
#include "TaylorCalculator.h"
#include "TestSystem.h"

namespace {

constexpr double kCutoff = 1e-11;

// Bodies at rest in a wide cloud, so that nothing happens and all steps are alike.
PairWalk Cloud(int32 count) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> unit(-1, 1);
    PairWalk walk;
    walk.massive = count;
    for (int32 i = 0; i < count; i++) {
        PairWalk::Body body{};
        for (double& coordinate : body.position)
            coordinate = 1e12 * unit(random);
        body.gm = 1e15;
        walk.bodies.push_back(body);
    }
    return walk;
}

// The program's own calculation thread, from the start of a run to its end.
void BenchAgainstScalar(BenchTable* table, int32 count) {
    const int32 reports = std::clamp(4'000'000 / (count * count), 2000, 100'000);
    const PairWalk cloud = Cloud(count);
    TestSystem system(cloud, 4, kCutoff);
    TaylorCalculator calculator(system.Portal(), system.Consumers(), nullptr);
    const auto scalar = [&](ScalarTaylor::Forces forces) {
        return [reports, taylor = ScalarTaylor(cloud, 4, kCutoff, forces)]() mutable {
            for (int32 i = 0; i < reports; i++) {
                if (i % 100 == 0) taylor.ClearReports();
                taylor.Step();
                taylor.Report();
            }
        };
    };
    const auto times =
        Measure({[&] { system.Run(&calculator, reports); }, scalar(ScalarTaylor::Forces::kWalk),
                 scalar(ScalarTaylor::Forces::kTensors)},
                1, 15);
    const std::string what = "step with report, " + std::to_string(count) + " bodies";
    table->AddFigure(what, 1e6 * times[0].median / reports, "us");
    const double ratio = times[1].median / times[0].median;
    if (count == 10)
        table->AddAtLeast(what + ", against scalar code", 2.0, ratio, "x");
    else
        table->AddFigure(what + ", against scalar code", ratio, "x");
    table->AddFigure(what + ", against scalar tensors", times[2].median / times[0].median, "x");
}

// The parts of TaylorCalculator's step, with the report or without it.
class Stepper {
public:
    explicit Stepper(const PairWalk& walk) : system_(walk, 4, kCutoff), evaluator_(1) {
        walk.CopyTo(&evaluator_);
        parts_.ResortDels(system_.Portal()->BodiesInMassOrder());
        step_.Restart(kCutoff, 4);
        batch_.SetSize(evaluator_.CountBodies(), kBatch);
        for (int axis = 0; axis < 3; axis++) {
            arrays_.position[axis] = evaluator_.Position(axis);
            arrays_.velocity[axis] = evaluator_.Velocity(axis);
        }
        stop_.pauseCount = 0;
    }
    void Batch(bool report) {
        batch_.Clear();
        for (int32 i = 0; i < kBatch; i++) {
            if (evaluator_.Evaluate(4, stop_) != ForceEvaluator::Result::kDone) return;
            step_.Adapt(evaluator_.Rate());
            parts_.Advance(4, step_.Powers(), &evaluator_);
            if (report) batch_.Add(i, arrays_);
        }
    }

private:
    static constexpr int32 kBatch = 100;

    TestSystem system_;
    ForceEvaluator evaluator_;
    StopFlags stop_;
    TaylorParts parts_;
    StepControl step_;
    ReportBatch batch_;
    BodyArrays arrays_{};
};

// From the least times: a hundredth of a step drowns in whatever else the machine does.
void BenchReport(BenchTable* table) {
    const struct {
        int32 count;
        double mostPercent;
    } cases[] = {{2, 15}, {3, 15}, {4, 15}, {10, 5}, {100, 1}, {300, 1}};
    for (const auto& [count, mostPercent] : cases) {
        Stepper with(Cloud(count)), without(Cloud(count));
        const int32 calls = std::max(1, 20000 / (count * count));
        const auto times =
            Measure({[&] { with.Batch(true); }, [&] { without.Batch(false); }}, calls, 101);
        table->AddAtMost("report's share of a step, " + std::to_string(count) + " bodies",
                         mostPercent, 100 * (times[0].least / times[1].least - 1), "%");
    }
}

void BenchPause(BenchTable* table) {
    using Clock = std::chrono::steady_clock;
    TestSystem system(Cloud(5000), 4, kCutoff);
    TaylorCalculator calculator(system.Portal(), system.Consumers(), nullptr);
    std::vector<double> delays;
    for (int i = 0; i < 41; i++) {
        calculator.UnPause();
        std::this_thread::sleep_for(std::chrono::milliseconds(3 + 17 * i % 101));
        const Clock::time_point asked = Clock::now();
        calculator.Pause();
        delays.push_back(std::chrono::duration<double>(Clock::now() - asked).count());
    }
    std::sort(delays.begin(), delays.end());
    table->AddAtMost("pause, 5000 massive bodies", 10, 1e3 * delays[delays.size() / 2], "ms");
    table->AddFigure("pause, 5000 massive bodies, the longest of 41", 1e3 * delays.back(), "ms");
}

}  // namespace

void BenchCalculator(BenchTable* table) {
    for (int32 count : {2, 3, 10, 100})
        BenchAgainstScalar(table, count);
    BenchReport(table);
    BenchPause(table);
}
