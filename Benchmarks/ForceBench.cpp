// The force evaluation against the plain pair walk of the same form, and by itself. The least times
// count: a second thread has the second processor to itself only now and then.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Calculation/ForceEvaluator.h"
#include "Tests/Calculation/PairWalk.h"

namespace {

PairWalk Cloud(int32 count) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> unit(-1, 1);
    PairWalk walk;
    walk.massive = count;
    walk.bodies.resize(count);
    for (PairWalk::Body& body : walk.bodies) {
        for (int k = 0; k < 3; k++) {
            body.position[k] = 1e12 * unit(random);
            body.velocity[k] = 1e4 * unit(random);
        }
        body.gm = 1e15;
    }
    return walk;
}

// A force evaluation of order 4.
class Evaluation {
public:
    Evaluation(const PairWalk& walk, int32 threads) : evaluator_(threads) {
        walk.CopyTo(&evaluator_);
        stop_.pauseCount = 0;
    }
    ForceEvaluator* Evaluator() { return &evaluator_; }
    StopFlags* Stop() { return &stop_; }
    ForceEvaluator::Result Evaluate() { return evaluator_.Evaluate(4, stop_); }
    // A figure of work that was not done would be worthless.
    void operator()() {
        if (Evaluate() != ForceEvaluator::Result::kDone) std::abort();
    }

private:
    ForceEvaluator evaluator_;
    StopFlags stop_;
};

void BenchAgainstWalk(BenchTable* table) {
    PairWalk walk = Cloud(1000);
    Evaluation one(walk, 1), two(walk, 2);
    const auto times = Measure({[&] { walk.Evaluate(4); }, [&] { one(); }, [&] { two(); }}, 1, 101);
    table->AddAtLeast("forces, 1000 bodies, 1 thread, against the pair walk", 2.8,
                      times[0].least / times[1].least, "x");
    table->AddAtLeast("forces, 1000 bodies, 2 threads, against the pair walk", 4.5,
                      times[0].least / times[2].least, "x");
    table->AddFigure("forces, 1000 bodies, pair walk", 1e3 * times[0].least, "ms");
}

void BenchInstructionSets(BenchTable* table) {
    PairWalk walk = Cloud(1000);
    const struct {
        InstructionSet set;
        const char* name;
    } sets[] = {{InstructionSet::kBaseline, "baseline"},
                {InstructionSet::kAvx2, "AVX2"},
                {InstructionSet::kAvx512, "AVX-512"}};
    for (const auto& [set, name] : sets) {
        Evaluation one(walk, 1);
        if (!one.Evaluator()->SetInstructionSet(set)) continue;
        const auto times = Measure({[&] { walk.Evaluate(4); }, [&] { one(); }}, 1, 31);
        table->AddFigure(
            std::string("forces, 1000 bodies, 1 thread, ") + name + ", against the walk",
            times[0].least / times[1].least, "x");
    }
}

void BenchFewBodies(BenchTable* table) {
    for (int32 count : {2, 3, 5, 10, 20, 50, 100, 200}) {
        PairWalk walk = Cloud(count);
        Evaluation one(walk, 1), two(walk, 2);
        const int32 calls = std::max(1, 200000 / (count * count));
        const auto times =
            Measure({[&] { walk.Evaluate(4); }, [&] { one(); }, [&] { two(); }}, calls, 31);
        const std::string what = "forces, " + std::to_string(count) + " bodies, ";
        if (count <= 10)
            table->AddAtMost(what + "1 thread", 0.5, 1e6 * times[1].least, "us");
        else
            table->AddFigure(what + "1 thread", 1e6 * times[1].least, "us");
        table->AddFigure(what + "1 thread, against the walk", times[0].least / times[1].least, "x");
        if (count >= 50)
            table->AddFigure(what + "2 threads, against the walk", times[0].least / times[2].least,
                             "x");
    }
}

// From the wish to stop until the evaluation has returned, with the slowest instructions; the
// median of many.
void BenchStop(BenchTable* table) {
    using Clock = std::chrono::steady_clock;
    Evaluation evaluation(Cloud(5000), 1);
    evaluation.Evaluator()->SetInstructionSet(InstructionSet::kBaseline);
    std::vector<double> delays;
    for (int i = 0; i < 15; i++) {
        evaluation.Stop()->internalPause = false;
        Clock::time_point asked;
        std::thread stopper([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(5 + i));
            asked = Clock::now();
            evaluation.Stop()->internalPause = true;
        });
        if (evaluation.Evaluate() != ForceEvaluator::Result::kStopped) std::abort();
        const Clock::time_point stopped = Clock::now();
        stopper.join();
        delays.push_back(std::chrono::duration<double>(stopped - asked).count());
    }
    std::sort(delays.begin(), delays.end());
    table->AddAtMost("forces, 5000 bodies, time to stop", 1, 1e3 * delays[delays.size() / 2], "ms");
}

}  // namespace

void BenchForces(BenchTable* table) {
    BenchAgainstWalk(table);
    BenchInstructionSets(table);
    BenchFewBodies(table);
    BenchStop(table);
}
