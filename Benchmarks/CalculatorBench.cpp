// Whole steps of the calculator with their reports: against plain scalar code, the share of the
// report, and how soon a pause takes effect.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Calculation/ForceEvaluator.h"
#include "Calculation/StepControl.h"
#include "Calculation/TaylorCalculator.h"
#include "Calculation/TaylorParts.h"
#include "Model/Systems/Body.h"
#include "Tests/Calculation/ScalarTaylor.h"
#include "Tests/Calculation/TestSystem.h"

namespace {

constexpr double kCutoff = 1e-11;

double Seconds(const std::function<void()>& piece) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    piece();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double Median(std::vector<double>* numbers) {
    std::sort(numbers->begin(), numbers->end());
    return (*numbers)[numbers->size() / 2];
}

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

// Two at rest would soon have fallen into one another.
PairWalk Circling() {
    PairWalk pair = Cloud(2);
    const double distance = 1e12;
    const double speed = std::sqrt(2.0 * pair.bodies[0].gm / distance) / 2.0;
    for (const int side : {-1, 1}) {
        PairWalk::Body& body = pair.bodies[side < 0 ? 0 : 1];
        body.position[0] = side * distance / 2.0;
        body.position[1] = body.position[2] = 0.0;
        body.velocity[1] = side * speed;
    }
    return pair;
}

// The program's own calculation thread, from the start of a run to its end. The least times count:
// what else the machine does only adds to them, and to those of two threads not alike.
void BenchAgainstScalar(BenchTable* table, int32 count, int32 order, double least) {
    const int32 reports = std::clamp(4'000'000 / (count * count), 1000, 50'000);
    const PairWalk cloud = count == 2 ? Circling() : Cloud(count);
    TestSystem system(cloud, order, kCutoff);
    TaylorCalculator calculator(system.Portal(), system.Consumers(), nullptr);
    const auto scalar = [reports, taylor = ScalarTaylor(cloud, order, kCutoff),
                         batch = std::vector<double>()]() mutable {
        for (int32 i = 0; i < reports; i++) {
            if (i % 100 == 0) batch.clear();
            taylor.Step();
            batch.push_back(taylor.Time());
            for (const PairWalk::Body& body : taylor.System().bodies) {
                batch.insert(batch.end(), body.position, body.position + 3);
                batch.insert(batch.end(), body.velocity, body.velocity + 3);
            }
        }
    };
    const auto run = [&] {
        const int64 before = calculator.StepsTaken();
        system.Run(&calculator, reports);
        // A figure of work that was not done would be worthless.
        if (calculator.StepsTaken() - before != reports) std::abort();
    };
    const auto times = Measure({run, scalar}, 1, 45);
    const std::string what = "step with report, order " + std::to_string(order) + ", " +
                             std::to_string(count) + " bodies";
    table->AddFigure(what, 1e6 * times[0].least / reports, "us");
    const double ratio = times[1].least / times[0].least;
    table->AddAtLeast(what + ", against scalar code", least, ratio, "x");
}

// The parts of TaylorCalculator's step, with the report or without it.
class Stepper {
public:
    static constexpr int32 kBatch = 100;

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
    // At most kBatch of them.
    void Step(int32 steps, bool report) {
        batch_.Clear();
        for (int32 i = 0; i < steps; i++) {
            if (evaluator_.Evaluate(4, stop_) != ForceEvaluator::Result::kDone) return;
            step_.Adapt(evaluator_.Rate());
            parts_.Advance(4, step_.Powers(), &evaluator_);
            if (report) batch_.Add(i, arrays_);
        }
    }

private:
    TestSystem system_;
    ForceEvaluator evaluator_;
    StopFlags stop_;
    TaylorParts parts_;
    StepControl step_;
    ReportBatch batch_;
    BodyArrays arrays_{};
};

// The median of comparisons between neighbouring moments: a hundredth of a step would drown in
// whatever else the machine does.
double ReportShare(int32 count) {
    constexpr int32 kComparisons = 3000;
    const int32 steps = std::clamp(40'000 / (count * count), 4, Stepper::kBatch);
    Stepper stepper(Cloud(count));
    std::vector<double> shares;
    for (int32 i = 0; i < kComparisons; i++) {
        const bool reportFirst = i % 2 == 0;
        const double first = Seconds([&] { stepper.Step(steps, reportFirst); });
        const double second = Seconds([&] { stepper.Step(steps, !reportFirst); });
        shares.push_back((reportFirst ? first / second : second / first) - 1);
    }
    return Median(&shares);
}

void BenchReport(BenchTable* table) {
    const struct {
        int32 count;
        double mostPercent;
    } cases[] = {{2, 15}, {3, 15}, {4, 15}, {10, 5}, {100, 1}, {300, 1}};
    for (const auto& [count, mostPercent] : cases)
        table->AddAtMost("report's share of a step, " + std::to_string(count) + " bodies",
                         mostPercent, 100 * ReportShare(count), "%");
}

void BenchPause(BenchTable* table, int32 order) {
    TestSystem system(Cloud(5000), order, kCutoff);
    TaylorCalculator calculator(system.Portal(), system.Consumers(), nullptr);
    std::vector<double> delays;
    for (int i = 0; i < 41; i++) {
        calculator.UnPause(i % 2 == 1);
        // At the start of a run, within its first step, and now and then within a later one.
        const int32 wait = i % 5 == 4 ? 300 + 23 * i : 3 + 17 * i % 101;
        std::this_thread::sleep_for(std::chrono::milliseconds(wait));
        delays.push_back(Seconds([&] { calculator.Pause(); }));
    }
    const std::string what = "pause, 5000 massive bodies, order " + std::to_string(order);
    table->AddAtMost(what, 10, 1e3 * Median(&delays), "ms");
    table->AddAtMost(what + ", the longest of 41", 10, 1e3 * delays.back(), "ms");
}

}  // namespace

void BenchCalculator(BenchTable* table) {
    const struct {
        int32 count;
        int32 order;
        double least;
    } cases[] = {{2, 2, 1}, {2, 3, 1}, {2, 4, 1}, {3, 4, 1}, {10, 4, 2}, {100, 4, 2}};
    for (const auto& [count, order, least] : cases)
        BenchAgainstScalar(table, count, order, least);
    BenchReport(table);
    for (const int32 order : {4, 16})
        BenchPause(table, order);
}
