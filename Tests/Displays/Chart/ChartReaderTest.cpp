// What charts show of runs whose course is known.
#include "Displays/Chart/ChartReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "Model/Sharing/ModelGuards.h"
#include "Tests/Simulation/History/HistoryRun.h"

namespace {

constexpr bigtime_t kLong = 60'000'000;

class ChartOf {
public:
    ChartOf(HistoryRun* run, std::vector<ChartLine> lines) : run_(run), lines_(std::move(lines)) {
        reader_.SetHistory(&run->history);
        Update();
    }

    void Update(bigtime_t slice = kLong) {
        {
            const ReadGuard guard(run_->document.Portal());
            const TimeLine line = ReadTimeLine(*run_->document.Portal(), run_->history);
            reader_.Start(lines_, ReadChartRuns(*run_->document.Portal(), line, run_->history));
        }
        while (!reader_.Work(slice)) {
        }
    }

    [[nodiscard]] const ChartSeries& operator[](std::size_t line) const {
        return reader_.Series()[line];
    }
    // Of all points of a line.
    [[nodiscard]] ChartSpan Span(std::size_t line) const {
        return (*this)[line].Envelope(0, (*this)[line].Count());
    }

private:
    HistoryRun* const run_;
    const std::vector<ChartLine> lines_;
    ChartReader reader_;
};

ChartLine Line(Quantity quantity, int64 body = 1, int64 about = 0) {
    return {quantity, body, about, {}, Crossing::kNone};
}

// From periapsis, at distance 1 about GM 1 - gm.
HistoryRun::Planet Orbiter(double eccentricity, double gm) {
    return {gm, 1.0, 0.0, 0.0, std::sqrt(1.0 + eccentricity), 0.0};
}

}  // namespace

TEST(ChartReaderTest, AnOrbitHasTheElementsItWasMadeWith) {
    constexpr double kGm = 0.01;
    constexpr double kEccentricity = 0.3;
    HistoryRun run({{1.0 - kGm, 0, 0, 0, 0, 0}, Orbiter(kEccentricity, kGm)});
    run.Run(60'000);
    const ChartOf chart(&run, {Line(Quantity::kEccentricity), Line(Quantity::kSemiMajorAxis),
                               Line(Quantity::kPeriod), Line(Quantity::kDistance),
                               Line(Quantity::kInclination), Line(Quantity::kEnergyError),
                               Line(Quantity::kBodies), Line(Quantity::kTrueAnomaly, 1, 1)});
    const double axis = 1.0 / (1.0 - kEccentricity);
    ASSERT_GT(chart[0].Count(), 20u);
    const auto expectNear = [&](std::size_t line, double value, double error) {
        EXPECT_NEAR(chart.Span(line).low, value, error) << line;
        EXPECT_NEAR(chart.Span(line).high, value, error) << line;
    };
    // The other body is between two samples, which are good to 1e-4 of its own path.
    expectNear(0, kEccentricity, 1e-4);
    expectNear(1, axis, 1e-4 * axis);
    expectNear(2, 2.0 * std::numbers::pi * std::pow(axis, 1.5), 1e-2);
    EXPECT_NEAR(chart.Span(3).low, 1.0, 1e-4);
    EXPECT_NEAR(chart.Span(3).high, axis * (1.0 + kEccentricity), 1e-3);
    EXPECT_EQ(chart.Span(4).high, 0.0);
    EXPECT_LT(chart.Span(5).high, 1e-9);
    expectNear(6, 2.0, 0.0);
    EXPECT_EQ(chart[7].Count(), 0u);
}

// Between samples, too, of which a revolution has some dozen.
TEST(ChartReaderTest, ACircleHasOneDistance) {
    HistoryRun run({{1.0, 0, 0, 0, 0, 0}, Orbiter(0.0, 0.0)});
    run.Run(30'000);
    const ChartOf chart(&run, {Line(Quantity::kDistance), Line(Quantity::kX)});
    const ChartSpan distance = chart.Span(0);
    EXPECT_NEAR(distance.low, 1.0, 1e-9);
    EXPECT_NEAR(distance.high, 1.0, 1e-9);
    for (std::size_t i = 0; i < chart[1].Count(); i++)
        if (!std::isnan(chart[1][i].y)) {
            EXPECT_NEAR(chart[1][i].y, std::cos(chart[1][i].time), 2e-4);
        }
}

// Where a circle passes the plane it does so at one place.
TEST(ChartReaderTest, CrossingsOfAPlaneAreASection) {
    HistoryRun run({{1.0, 0, 0, 0, 0, 0}, Orbiter(0.0, 0.0)});
    run.Run(60'000);
    const ChartOf chart(&run, {{Quantity::kVx, 1, 0, Quantity::kX, Crossing::kY}});
    const double time = run.recorder.reports.back().time;
    ASSERT_GE(time, 2.0 * std::numbers::pi);
    EXPECT_EQ(chart[0].Count(), static_cast<std::size_t>(time / (2.0 * std::numbers::pi)));
    for (std::size_t i = 0; i < chart[0].Count(); i++) {
        EXPECT_NEAR(chart[0][i].x, 1.0, 2e-4);
        EXPECT_NEAR(chart[0][i].y, 0.0, 2e-3);
        EXPECT_NEAR(chart[0][i].time, 2.0 * std::numbers::pi * static_cast<double>(i + 1), 2e-3);
    }
}

// A run that goes on only gives its new part, and a line that is made in slices is the same.
TEST(ChartReaderTest, LinesGrowWithTheRun) {
    HistoryRun run({{1.0, 0, 0, 0, 0, 0}, Orbiter(0.2, 0.0)});
    const std::vector<ChartLine> lines{Line(Quantity::kSpeed), Line(Quantity::kEnergyError)};
    ChartOf growing(&run, lines);
    EXPECT_EQ(growing[0].Count(), 0u);
    for (int i = 0; i < 3; i++) {
        run.Run(10'000);
        growing.Update(0);
    }
    const ChartOf whole(&run, lines);
    for (std::size_t line = 0; line < lines.size(); line++) {
        ASSERT_GT(whole[line].Count(), 3u);
        EXPECT_GE(growing[line].Count(), whole[line].Count());
        for (std::size_t i = 0; i < whole[line].Count(); i++) {
            const ChartSeries::Point& point = whole[line][i];
            // Where a run begins the one before has a point, too.
            if (std::isnan(point.y) || (i > 0 && std::isnan(whole[line][i - 1].y))) continue;
            EXPECT_EQ(growing[line].At(point.time).y, point.y) << line << ' ' << point.time;
        }
        for (std::size_t i = 1; i < growing[line].Count(); i++)
            ASSERT_GE(growing[line][i].time, growing[line][i - 1].time);
    }
}

// What comes next is joined to what was known, whoever of the two has a sample when.
TEST(ChartReaderTest, APathGoesOnWhereItWasLeft) {
    const auto at = [](double time, double x, bool isJoined) {
        return Sample{time, {x, 0.0, 0.0}, {}, isJoined};
    };
    const std::vector<Sample> coarse{at(0.5, 9.0, true), at(3.0, 9.0, true)};
    const std::vector<Sample> fine{at(0.0, 1.0, false), at(1.0, 2.0, true), at(2.0, 2.5, true)};
    const std::vector<Sample> path = RelativePath(fine, coarse, 0.7);
    ASSERT_EQ(path.size(), 2u);
    EXPECT_TRUE(path[0].isJoined && path[1].isJoined);
    EXPECT_DOUBLE_EQ(path[0].position.x, -7.0);
    std::vector<Sample> jumping = fine;
    jumping[2].isJoined = false;
    EXPECT_FALSE(RelativePath(jumping, coarse, 0.7)[1].isJoined);
}

// After a merger the pair weighs more, there is one body less, and no energy is missed.
TEST(ChartReaderTest, MergersChangeMassesAndAreNoErrors) {
    HistoryRun run(TwoCollisions());
    run.Run(100'000);
    ASSERT_EQ(run.mergers, 2);
    const ChartOf chart(&run, {Line(Quantity::kBodies), Line(Quantity::kEnergyError),
                               Line(Quantity::kDistance, 3, 2), Line(Quantity::kPeriod, 2, 0)});
    EXPECT_EQ(chart.Span(0), (ChartSpan{4.0, 6.0}));
    EXPECT_LT(chart.Span(1).high, 1e-6);
    // The line of who is absorbed ends there.
    const std::vector<RunEvent> events = run.history.Events(run.Focus());
    double merged = 0.0;
    for (const RunEvent& event : events)
        if (event.kind == RunEvent::Kind::kMerger && event.before.at(0).id == 2)
            merged = event.time;
    ASSERT_GT(merged, 0.0);
    ASSERT_GT(chart[2].Count(), 1u);
    EXPECT_NEAR(chart[2][chart[2].Count() - 1].time, merged, 1e-2 * merged);
    const ReadGuard guard(run.document.Portal());
    const TimeLine line = ReadTimeLine(*run.document.Portal(), run.history);
    const std::vector<ChartRun> runs = ReadChartRuns(*run.document.Portal(), line, run.history);
    ASSERT_EQ(runs.size(), 1u);
    const auto masses = runs[0].MassesOf(2, 0);
    ASSERT_EQ(masses.size(), 2u);
    EXPECT_DOUBLE_EQ(masses[0].gm, 1.000002);
    EXPECT_EQ(masses[1].time, merged);
    EXPECT_DOUBLE_EQ(masses[1].gm, 1.000003);
}
