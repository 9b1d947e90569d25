// What keeping a run costs, and how soon a moment of it is there again.
#include <atomic>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Calculation/TaylorCalculator.h"
#include "Model/Epochs/Epoch.h"
#ifdef ORVEK_GUI
#include "Displays/Trajectories/KeptTrails.h"
#include "Displays/Trajectories/TrajectoryMap.h"
#include "Displays/Trajectories/TrajectoryView.h"
#endif
#include "Simulation/History/RunHistory.h"
#include "Tests/Calculation/TestSystem.h"

namespace {

constexpr double kCutoff = 1e-11;

// A star and light bodies on circles about it, in units in which the innermost takes 2 pi seconds.
PairWalk Planets(int32 count, int32 massless = 0) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> unit(0, 1);
    PairWalk walk;
    walk.massive = count;
    const int32 all = count + massless;
    walk.bodies.push_back({{0, 0, 0}, {0, 0, 0}, 1.0, 0, {}, {}, {}});
    for (int32 i = 1; i < all; i++) {
        const double distance = 1.0 + 29.0 * (i - 1) / all;
        const double angle = 2.0 * M_PI * unit(random);
        const double speed = 1.0 / std::sqrt(distance);
        const double x = std::cos(angle), y = std::sin(angle);
        walk.bodies.push_back({{distance * x, distance * y, 0.01 * unit(random)},
                               {-speed * y, speed * x, 0},
                               i < count ? 1e-9 / i : 0.0,
                               0,
                               {},
                               {},
                               {}});
    }
    return walk;
}

class Dropper : public ReportConsumer {
public:
    explicit Dropper(const Calculator& calculator) : calculator_(calculator) {
        release_ben(calculator_.WriteOk());
    }
    void PrepareForGo(int32) override {}
    void ReadData(int32, double*, double*, double*) override { batches_++; }
    void ReadOk() override { release_ben(calculator_.WriteOk()); }

    int32 Batches() const { return batches_; }

private:
    const Calculator& calculator_;
    std::atomic<int32> batches_{0};
};

void BenchKeeping(BenchTable* table, int32 count, int32 reports, double atLeast) {
    TestSystem dropped(Planets(count), 4, kCutoff), kept(Planets(count), 4, kCutoff);
    TaylorCalculator plain(dropped.Portal(), dropped.Consumers(), nullptr);
    TaylorCalculator keeping(kept.Portal(), kept.Consumers(), nullptr);
    Dropper dropper(plain);
    dropped.consumers.push_back(&dropper);
    RunHistory history(kept.Portal(), &keeping);
    kept.consumers.push_back(&history);
    const auto times = Measure(
        {[&] { dropped.Run(&plain, reports, true); }, [&] { kept.Run(&keeping, reports, true); }},
        1, 21);
    const std::string what = "keeping history, " + std::to_string(count) + " bodies";
    table->AddAtLeast(what + ", speed against dropping", atLeast,
                      100.0 * times[0].median / times[1].median, "%");
}

// Each batch that is handed over is a picture.
void BenchPictures(BenchTable* table) {
    constexpr int32 kReports = 30;
    constexpr int32 kRuns = 6;  // one of them warms up
    TestSystem system(Planets(1000, 10'000), 4, kCutoff);
    TaylorCalculator calculator(system.Portal(), system.Consumers(), nullptr);
    calculator.SetThreads(2);
    RunHistory history(system.Portal(), &calculator);
    Dropper pictures(calculator);
    system.consumers = {&pictures, &history};
    const auto times = Measure({[&] { system.Run(&calculator, kReports, true); }}, 1, kRuns - 1);
    const double picturesOfRun = static_cast<double>(pictures.Batches()) / kRuns;
    table->AddAtLeast("1,000 massive + 10,000 massless bodies with history, 2 threads", 20,
                      picturesOfRun / times[0].median, "pictures/s");
    table->AddFigure("the same, reports of a picture", kReports / picturesOfRun, "");
}

void BenchSeek(BenchTable* table) {
    constexpr int32 kReports = 1'000'000;
    TestSystem system(Planets(10), 4, kCutoff);
    TaylorCalculator calculator(system.Portal(), system.Consumers(), nullptr);
    RunHistory history(system.Portal(), &calculator);
    system.consumers.push_back(&history);
    system.Run(&calculator, kReports);
    const RunHistory::Span span = *history.SpanOf(system.GetEpoch());
    std::mt19937 random(2);
    std::uniform_real_distribution<double> moment(span.start, span.end);
    const auto times = Measure(
        {[&] {
            RunCheckpoint found;
            static_cast<void>(history.MomentAt(system.GetEpoch(), moment(random), {}, &found));
        }},
        1, 41);
    table->AddAtMost("any moment of 1,000,000 steps, 10 bodies", 200, 1e3 * times[0].median, "ms");
    table->AddFigure("history of 1,000,000 steps, 10 bodies",
                     1e-6 * static_cast<double>(history.Bytes()), "MB");
}

#ifdef ORVEK_GUI

class FlatMap : public TrajectoryMap {
public:
    BPoint Map(double x, double y, double /*z*/) override {
        return {static_cast<float>(x), static_cast<float>(y)};
    }
    float DiscSize(double /*radius*/) override { return 1.0f; }
};

// Circles of many radii, as often run through as a body does in a long run, a little elsewhere each
// time.
std::vector<KeptTrails::Trail> Circles(int32 bodies, int32 samples) {
    constexpr double kTurn = 0.44;
    constexpr double kDrift = 1e-4;  // pixels
    std::vector<KeptTrails::Trail> trails;
    for (int32 body = 0; body < bodies; body++) {
        const double radius = 30.0 + 35.0 * body;
        KeptTrails::Trail trail{body, {255, static_cast<uint8>(20 * body), 100, 255}, {}};
        for (int32 i = 0; i < samples; i++) {
            const double angle = kTurn * i;
            const ThreeVector out{std::cos(angle), std::sin(angle), 0.0};
            const double r = radius + kDrift * i;
            trail.samples.push_back({angle, r * out, {-r * out.y, r * out.x, 0.0}, i > 0});
        }
        trails.push_back(std::move(trail));
    }
    return trails;
}

void BenchPainting(BenchTable* table) {
    constexpr int32 kBodies = 10;
    constexpr int32 kSamples = 10'000;
    constexpr bigtime_t kEnough = 10'000'000;  // us
    const auto trails = Circles(kBodies, kSamples);
    FlatMap map;
    TrajectoryView view("bench", &map);
    view.ResizeTo(1000.0f, 800.0f);
    const auto times = Measure(
        {[&] {
            view.Erase();
            KeptTrails kept;
            kept.Begin(trails, {view.BitmapBounds()}, {{}, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}});
            kept.Paint(&view, kEnough);
        }},
        1, 11);
    table->AddAtMost("trails painted anew, 10 bodies, 100,000 samples", 16, 1e3 * times[0].median,
                     "ms");
}

#endif

}  // namespace

void BenchHistory(BenchTable* table) {
#ifdef ORVEK_GUI
    BenchPainting(table);
#endif
    BenchSeek(table);
    BenchKeeping(table, 10, 100'000, 90);
    BenchKeeping(table, 1000, 130, 97);
    BenchPictures(table);
}
