// Runs of high order: their cost and what they lose of the energy; what reports, the search for
// contacts and a second thread cost or gain.
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Calculation/Series/SeriesContacts.h"
#include "Tests/Calculation/Series/SeriesFixtures.h"

namespace {

constexpr int32 kOrder = 16;

long double Energy(const PointSystem& system) {
    long double energy = 0;
    for (std::size_t i = 0; i < system.size(); i++) {
        const PointBody& a = system[i];
        const auto square = [](long double x, long double y, long double z) {
            return x * x + y * y + z * z;
        };
        energy += a.gm * square(a.velocity.x, a.velocity.y, a.velocity.z) / 2;
        for (std::size_t j = i + 1; j < system.size(); j++) {
            const PointBody& b = system[j];
            energy -= a.gm * b.gm /
                      std::sqrt(square(static_cast<long double>(a.position.x) - b.position.x,
                                       static_cast<long double>(a.position.y) - b.position.y,
                                       static_cast<long double>(a.position.z) - b.position.z));
        }
    }
    return energy;
}

class SeriesRun {
public:
    SeriesRun(const PointSystem& system, double tolerance, int32 threads, int32 order = kOrder)
        : system_(system), stepper_(threads) {
        stop_.pauseCount = 0;
        Load(system, &stepper_, order);
        contacts_.Resize(stepper_.CountBodies(), stepper_.CountMassive());
        now_.Resize(stepper_.CountBodies(), stepper_.CountMassive());
        stepper_.Start(tolerance, 0.0);
    }
    void Step(int32 steps) {
        for (int32 i = 0; i < steps; i++)
            if (stepper_.MakeStep(stop_) != SeriesStepper::Result::kDone) return;
    }
    // Returns the number of steps.
    int32 StepUntil(double time) {
        int32 steps = 0;
        do {
            Step(1);
            steps++;
        } while (stepper_.HasStep() && stepper_.Step().End().high < time);
        return steps;
    }
    void StepAndReport(int32 steps) {
        for (int32 i = 0; i < steps; i++) {
            Step(1);
            const SeriesStep& step = stepper_.Step();
            reports_ += step.Parts();
            for (int32 part = 1; part <= step.Parts(); part++)
                stepper_.Evaluate(step.ThetaOf(part), &now_);
        }
    }
    // True if something touched, which is not to be.
    bool StepAndSearch(int32 steps) {
        bool found = false;
        for (int32 i = 0; i < steps; i++) {
            Step(1);
            found |= contacts_.Find(stepper_.Store(), stepper_.Kernels(), stepper_.Step(), stop_)
                         .value_or(true);
        }
        return found;
    }
    [[nodiscard]] int64 Reports() const { return reports_; }
    double EnergyError() {
        const PointSystem end = StateAt(&stepper_, stepper_.Step().Theta());
        return static_cast<double>(std::fabs(Energy(end) / Energy(system_) - 1));
    }

private:
    const PointSystem system_;
    StopFlags stop_;
    SeriesStepper stepper_;
    SeriesContacts contacts_;
    SplitStates now_;
    int64 reports_ = 0;
};

void BenchSteps(BenchTable* table, const std::string& what, const PointSystem& system,
                double tolerance, int32 steps) {
    SeriesRun run(system, tolerance, 1);
    const auto times = Measure({[&] { run.Step(steps); }}, 1, 7);
    table->AddFigure("order 16, step of " + what, 1e6 * times[0].median / steps, "us");
    table->AddFigure("order 16, energy error of " + what, run.EnergyError(), "");
}

void BenchReports(BenchTable* table) {
    constexpr int32 kSteps = 2000;
    SeriesRun plain(Planets(9), 1e-16, 1), reporting(Planets(9), 1e-16, 1);
    const auto times =
        Measure({[&] { plain.Step(kSteps); }, [&] { reporting.StepAndReport(kSteps); }}, 1, 15);
    table->AddAtMost("order 16, reports' share, 10 bodies", 25,
                     100 * (times[1].median / times[0].median - 1), "%");
    table->AddFigure("order 16, reports a step, 10 bodies",
                     static_cast<double>(reporting.Reports()) / (16.0 * kSteps), "");
}

void BenchContacts(BenchTable* table) {
    constexpr int32 kSteps = 30;
    SeriesRun plain(Cluster(100, 100), 1e-13, 1), searching(Cluster(100, 100), 1e-13, 1);
    const auto times =
        Measure({[&] { plain.Step(kSteps); }, [&] { searching.StepAndSearch(kSteps); }}, 1, 15);
    table->AddAtMost("order 16, search for contacts, 100 bodies", 5,
                     100 * (times[1].median / times[0].median - 1), "%");
}

void BenchThreads(BenchTable* table, int32 bodies, int32 steps, double required) {
    SeriesRun one(Cluster(bodies, bodies), 1e-13, 1), two(Cluster(bodies, bodies), 1e-13, 2);
    // As with forces: a second thread has the second processor to itself only now and then.
    const auto times = Measure({[&] { one.Step(steps); }, [&] { two.Step(steps); }}, 1, 15);
    table->AddAtLeast("order 16, two threads, " + std::to_string(bodies) + " bodies", required,
                      times[0].least / times[1].least, "x");
}

// Beside what others need, measured elsewhere on a like machine and quoted here.
void BenchOuterPlanets(BenchTable* table) {
    constexpr double kTime = 10'000 * kYear;
    std::unique_ptr<SeriesRun> run;
    const auto whole = [&] {
        run = std::make_unique<SeriesRun>(OuterPlanets(), 1e-16, 1);
        run->StepUntil(kTime);
    };
    const auto times = Measure({whole}, 1, 5);
    const std::string what = "outer planets, 10,000 years";
    table->AddFigure("order 16, " + what, 1e3 * times[0].least, "ms");
    table->AddFigure("order 16, energy error of " + what, run->EnergyError(), "");
    table->AddFigure("quoted, IAS15, " + what, 207, "ms");
    table->AddFigure("quoted, IAS15, energy error of " + what, 2.5e-15, "");
}

// The table of the guide's page on orders.
void BenchOrders(BenchTable* table) {
    constexpr double kTime = 1000 * kYear;
    for (const int32 order : {8, 12, 16, 20, 24})
        for (const double tolerance : {1e-10, 1e-13, 1e-16}) {
            std::unique_ptr<SeriesRun> run;
            int32 steps = 0;
            const auto whole = [&] {
                run = std::make_unique<SeriesRun>(Planets(4), tolerance, 1, order);
                steps = run->StepUntil(kTime);
            };
            const auto times = Measure({whole}, 1, 3);
            char cutoff[16];
            std::snprintf(cutoff, sizeof cutoff, "%.0e", tolerance);
            const std::string what = "order " + std::to_string(order) + ", cutoff " + cutoff +
                                     ", 1000 years of 5 bodies";
            table->AddFigure(what, 1e3 * times[0].median, "ms");
            table->AddFigure(what + ", steps", steps, "");
            table->AddFigure(what + ", energy error", run->EnergyError(), "");
        }
}

}  // namespace

void BenchSeries(BenchTable* table) {
    BenchSteps(table, "a figure eight", FigureEight(), 1e-16, 5000);
    BenchSteps(table, "an orbit of eccentricity 0.999", KeplerPair(0.999), 1e-16, 5000);
    BenchSteps(table, "5 bodies", Planets(4), 1e-16, 5000);
    BenchSteps(table, "10 bodies", Planets(9), 1e-16, 2000);
    BenchSteps(table, "100 bodies", Cluster(100, 100), 1e-13, 30);
    BenchSteps(table, "1000 bodies", Cluster(1000, 1000), 1e-13, 1);
    BenchOuterPlanets(table);
    BenchOrders(table);
    BenchReports(table);
    BenchContacts(table);
    BenchThreads(table, 100, 30, 0.97);
    BenchThreads(table, 1000, 2, 1.7);
}
