#include <gtest/gtest.h>

#include <numbers>

#include "Simulation/History/KeptRun.h"
#include "Simulation/History/RelativeSamples.h"
#include "Tests/Platform/Allocations.h"
#include "Tests/Simulation/History/HistoryRun.h"

namespace {

using Report = ReportRecorder::Report;

ThreeVector At(const std::vector<double>& coordinates, std::size_t body) {
    return {coordinates[3 * body], coordinates[3 * body + 1], coordinates[3 * body + 2]};
}

// Of body i's path, m: from the accelerations that the others give it.
double RadiusOfCurvature(const Report& report, const std::vector<HistoryRun::Planet>& bodies,
                         std::size_t i) {
    ThreeVector acceleration;
    for (std::size_t j = 0; j < report.ids.size(); j++) {
        if (j == i) continue;
        const ThreeVector way = At(report.positions, j) - At(report.positions, i);
        const double gm = bodies[static_cast<std::size_t>(report.ids[j])].gm;
        acceleration += (gm / std::pow(Length(way), 3.0)) * way;
    }
    const ThreeVector v = At(report.velocities, i);
    return std::pow(Length(v), 3.0) / Length(Cross(v, acceleration));
}

// The greatest error of what is kept at any report of the run, in radii of curvature there.
double WorstError(HistoryRun* run, const std::vector<HistoryRun::Planet>& bodies) {
    double worst = 0.0;
    for (const int64 body : run->history.BodiesOf(run->Focus())) {
        const auto samples = run->history.Samples(run->Focus(), body, -1e9, 1e9);
        std::size_t next = 1;
        for (const Report& report : run->recorder.reports) {
            const auto place = std::find(report.ids.begin(), report.ids.end(), body);
            if (place == report.ids.end()) continue;
            const auto i = static_cast<std::size_t>(place - report.ids.begin());
            while (next + 1 < samples.size() && samples[next].time < report.time)
                next++;
            EXPECT_TRUE(samples[next].isJoined);
            const ThreeVector kept =
                Between(samples[next - 1], samples[next], report.time).position;
            const double error = Length(kept - At(report.positions, i));
            // Where the cubic is exact, rounding is left.
            const double rounding = 1e-13 * Length(kept);
            // Where a body almost stands its path is a cusp, and the way to the samples counts.
            const ThreeVector here = At(report.positions, i);
            const double size = std::max({RadiusOfCurvature(report, bodies, i),
                                          Length(samples[next - 1].position - here),
                                          Length(samples[next].position - here)});
            worst = std::max(worst, (error - rounding) / size);
        }
    }
    return worst;
}

struct Case {
    const char* name;
    std::vector<HistoryRun::Planet> bodies;
    double cutoff;
    int64 reports;
    double revolutions;  // of body 1
};

double Revolutions(const Case& run, double time) {
    return run.revolutions > 0.0 ? time / (2.0 * std::numbers::pi) : 0.0;
}

}  // namespace

// Circles, an ellipse of excentricity 0.99, a moon of a planet with a slow body far out, and a body
// that a planet throws out of its way.
TEST(Samples, StayWithinTheToleranceOfEveryReportLeftOut) {
    const double pericentre = std::sqrt(1.99 / 0.01);
    const Case cases[] = {
        {"circle", {{1.0, 0, 0, 0, 0, 0}, {0.0, 1, 0, 0, 1, 0}}, 1e-11, 100'000, 1.0},
        {"circle, coarse", {{1.0, 0, 0, 0, 0, 0}, {0.0, 1, 0, 0, 1, 0}}, 1e-5, 5000, 1.0},
        {"ellipse", {{1.0, 0, 0, 0, 0, 0}, {0.0, 0.01, 0, 0, pericentre, 0}}, 1e-9, 100'000, 0},
        {"moon",
         {{1.0, 0, 0, 0, 0, 0},
          {1e-3, 1, 0, 0, 1, 0},
          {1e-9, 1.01, 0, 0, 1.316, 0},
          {1e-5, -400, 0, 0, -0.05, 0}},
         1e-9,
         200'000,
         0},
        {"encounter",
         {{1.0, 0, 0, 0, 0, 0}, {0.01, 10, 0, 0, 0.3178, 0}, {0.0, 10.3, 2.5, 0, -0.6, 0}},
         1e-8,
         60'000,
         0},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        HistoryRun::Settings settings;
        settings.cutoff = one.cutoff;
        HistoryRun run(one.bodies, settings);
        run.Run(one.reports);
        const double worst = WorstError(&run, one.bodies);
        EXPECT_LE(worst, 1e-4);
        const auto samples = run.history.Samples(run.Focus(), 1, -1e9, 1e9);
        // A circle needs 15.
        const double revolutions = Revolutions(one, run.Focus()->Time());
        if (revolutions > 0.0) {
            EXPECT_LT(static_cast<double>(samples.size()), 22.0 * revolutions + 5.0);
        }
    }
}

namespace {

// A body on the unit circle, `turn` radians a report.
struct Circle {
    static constexpr double kTurn = 0.001;
    RunCheckpoint start;
    int64 report = 0;

    Circle() {
        start.state.ids = {1};
        start.state.names = {"Circle"};
        start.state.gm = {1.0};
        start.state.positions = {1.0, 0.0, 0.0};
        start.state.velocities = {0.0, 1.0, 0.0};
        start.radii = {0.0};
        start.order = 4;
        start.cutoff = 1e-9;
    }
    void Feed(KeptRun* run, int64 reports) {
        for (int64 i = 0; i < reports; i++) {
            double time = kTurn * static_cast<double>(++report);
            const double positions[] = {std::cos(time), std::sin(time), 0.0};
            const double velocities[] = {-std::sin(time), std::cos(time), 0.0};
            run->Add(1, &time, positions, velocities);
        }
    }
};

// Radians that no interval of the samples covers.
double Uncovered(const std::vector<Sample>& samples, double end) {
    double covered = 0.0;
    for (std::size_t i = 1; i < samples.size(); i++)
        if (samples[i].isJoined) covered += samples[i].time - samples[i - 1].time;
    return end - covered;
}

}  // namespace

TEST(Samples, ThinningTakesTheOldHalfByHalvesAndLeavesGapsWhereTooFewAreLeft) {
    Circle circle;
    KeptRun run(circle.start);
    circle.Feed(&run, 100'000);
    const double end = run.EndTime();
    const auto all = run.Samples(1, 0.0, end);
    EXPECT_LT(Uncovered(all, end), 1e-9);

    run.ThinSamples();
    const auto thinned = run.Samples(1, 0.0, end);
    EXPECT_NEAR(static_cast<double>(thinned.size()), 0.75 * static_cast<double>(all.size()), 3.0);
    EXPECT_LT(Uncovered(thinned, end), 1e-9);
    EXPECT_EQ(run.Samples(1, 0.6 * end, end).size(), [&] {
        return static_cast<std::size_t>(
            std::count_if(all.begin(), all.end(), [&](auto& s) { return s.time >= 0.6 * end; }) +
            1);
    }());
    // Every second one of what is left would not do: it is not drawn as if it did.
    run.ThinSamples();
    EXPECT_NEAR(Uncovered(run.Samples(1, 0.0, end), end), 0.5 * end, 1.5);
    EXPECT_LT(Uncovered(run.Samples(1, 0.6 * end, end), 0.4 * end), 1.0);
    for (int32 i = 0; i < 10; i++)
        run.ThinSamples();
    EXPECT_EQ(run.SampleBytes(), 0U);
    circle.Feed(&run, 10'000);
    EXPECT_NEAR(Uncovered(run.Samples(1, 0.0, run.EndTime()), run.EndTime()), end, 1.0);
}

TEST(Samples, WithoutMemoryTheOldestGoFirstAndTheRunGoesOn) {
    Circle circle;
    KeptRun run(circle.start);
    circle.Feed(&run, 100'000);
    const auto before = run.Samples(1, 0.0, run.EndTime());
    RefuseAllocationsFrom(256);
    circle.Feed(&run, 2'000);
    RefuseAllocationsFrom(SIZE_MAX);
    circle.Feed(&run, 2'000);
    EXPECT_TRUE(run.WasShortOfMemory());
    const auto after = run.Samples(1, 0.0, run.EndTime());
    EXPECT_LT(after.size(), before.size());
    EXPECT_EQ(after.back().time, run.EndTime());
    EXPECT_LT(Uncovered(run.Samples(1, 80.0, run.EndTime()), run.EndTime() - 80.0), 4.0);
}

TEST(Samples, InAFrameThatTurnsWithAPairWhatTurnsWithItStands) {
    const auto circle = [](double radius, double rate, double phase, double step) {
        std::vector<Sample> samples;
        for (double time = 0.0; time < 20.0; time += step) {
            const double angle = phase + rate * time;
            const ThreeVector out{std::cos(angle), std::sin(angle), 0.0};
            samples.push_back({time,
                               {radius * out.x, radius * out.y, 0.5},
                               {-radius * rate * out.y, radius * rate * out.x, 0.0},
                               time > 0.0});
        }
        return samples;
    };
    const std::vector<Sample> pair = circle(2.0, 1.0, 0.4, 0.3);
    for (const Sample& sample : Turned(circle(3.0, 1.0, 1.4, 0.37), pair, {0.0, 0.0, 7.0})) {
        EXPECT_NEAR(sample.position.x, 3.0 * std::cos(1.0), 3e-4);
        EXPECT_NEAR(sample.position.y, 3.0 * std::sin(1.0), 3e-4);
        EXPECT_EQ(sample.position.z, 0.5);
        EXPECT_LT(Length(sample.velocity), 3e-3);
    }
    // What stands goes round the other way, and the cubics follow.
    const std::vector<Sample> back = Turned(circle(3.0, 0.0, 0.0, 5.0), pair, {0.0, 0.0, 7.0});
    for (std::size_t i = 1; i < back.size(); i++) {
        const double time = 0.5 * (back[i - 1].time + back[i].time);
        const ThreeVector at = Between(back[i - 1], back[i], time).position;
        EXPECT_TRUE(back[i].isJoined);
        EXPECT_NEAR(at.x, 3.0 * std::cos(time + 0.4), 1e-3);
        EXPECT_NEAR(at.y, -3.0 * std::sin(time + 0.4), 1e-3);
    }
    // Seen along another axis: across stays across.
    for (const Sample& sample : Turned(pair, pair, {0.0, 1.0, 0.0})) {
        EXPECT_NEAR(sample.position.y, 0.0, 1e-9);
        EXPECT_GE(sample.position.x, 0.0);
    }
}
