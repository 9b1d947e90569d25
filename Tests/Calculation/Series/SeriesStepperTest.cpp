// Places, energies and failures of the series stepper.
#include "Calculation/Series/SeriesStepper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Tests/Calculation/Series/SeriesFixtures.h"
#include "Tests/Platform/Allocations.h"

namespace {

constexpr double kTolerance = 1e-16;

class SeriesStepperTest : public testing::Test {
protected:
    SeriesStepperTest() { stop_.pauseCount = 0; }
    void Start(const PointSystem& system, int32 order, double tolerance = kTolerance) {
        Load(system, &stepper_, order);
        stepper_.Start(tolerance, 0.0);
    }
    SeriesStepper::Result MakeStep() { return stepper_.MakeStep(stop_); }

    StopFlags stop_;
    SeriesStepper stepper_;
};

// The place of the second body from the first, by Kepler's equation.
ThreeVector KeplerPlace(double eccentricity, double time) {
    const long double rate =
        std::sqrt(static_cast<long double>(kSolarGM) / kAstronomicalUnit) / kAstronomicalUnit;
    const long double mean = std::remainder(rate * time, 2 * std::numbers::pi_v<long double>);
    long double anomaly = mean < 0 ? -3.0L : 3.0L;
    for (int i = 0; i < 60; i++)
        anomaly -= (anomaly - eccentricity * std::sin(anomaly) - mean) /
                   (1 - eccentricity * std::cos(anomaly));
    const long double minor = std::sqrt(1 - static_cast<long double>(eccentricity) * eccentricity);
    return {static_cast<double>(kAstronomicalUnit * (std::cos(anomaly) - eccentricity)),
            static_cast<double>(kAstronomicalUnit * minor * std::sin(anomaly)), 0.0};
}

}  // namespace

TEST_F(SeriesStepperTest, ArrivesWhereTwiceTheDigitsSay) {
    const struct {
        PointSystem system;
        double time;
        int32 steps;
        double mostError;
    } cases[] = {{FigureEight(), kYear, 100, 2e-14},
                 {Planets(4), 3 * kYear, 150, 5e-14},
                 {Planets(11), 0.5 * kYear, 25, 1e-14},
                 {Cluster(6, 3), 5 * kYear, 60, 1e-14},
                 {Cluster(45, 42), kYear, 4, 1e-14}};
    for (const auto& [system, time, steps, mostError] : cases) {
        const PointSystem reference = Reference(system, time, steps);
        for (const int32 order : {8, 12, 16, 20, 24}) {
            Start(system, order, order == 8 ? 1e-15 : kTolerance);
            EXPECT_LE(PositionError(RunTo(&stepper_, time), reference), mostError)
                << system.size() << " bodies, order " << order;
        }
        // A looser tolerance costs no more than it says.
        Start(system, 16, 1e-9);
        EXPECT_LE(PositionError(RunTo(&stepper_, time), reference), 1e-7) << system.size();
    }
}

TEST_F(SeriesStepperTest, FollowsOrbitsOfAnyEccentricity) {
    const double orbit =
        2 * std::numbers::pi * std::sqrt(kAstronomicalUnit / kSolarGM) * kAstronomicalUnit;
    for (const double eccentricity : {0.0, 0.5, 0.9, 0.999}) {
        Start(KeplerPair(eccentricity), 16);
        const double time = 10.4 * orbit;
        const PointSystem state = RunTo(&stepper_, time);
        ASSERT_EQ(state.size(), 2u);
        const ThreeVector error =
            state[1].position - state[0].position - KeplerPlace(eccentricity, time);
        EXPECT_LE(std::hypot(error.x, error.y),
                  (eccentricity < 0.95 ? 1e-12 : 1e-10) * kAstronomicalUnit)
            << eccentricity;
    }
}

TEST_F(SeriesStepperTest, RunsBackToItsStart) {
    const PointSystem system = Planets(3);
    const double orbit =
        2 * std::numbers::pi * std::sqrt(kAstronomicalUnit / kSolarGM) * kAstronomicalUnit;
    const struct {
        int32 orbits;
        double mostError;
    } cases[] = {{100, 5e-12}, {1000, 5e-10}};
    for (const auto& [orbits, mostError] : cases) {
        Start(system, 16);
        ASSERT_FALSE(RunTo(&stepper_, orbits * orbit).empty());
        // From the end of a step, with all its digits.
        const double end = stepper_.Step().End().high;
        SplitStates states;
        states.Resize(4, 4);
        stepper_.Evaluate(stepper_.Step().Theta(), &states);
        const auto at = [](const double* numbers, int32 body, int32 row) {
            return ThreeVector{numbers[SplitStates::Index(body, row)],
                               numbers[SplitStates::Index(body, row + 1)],
                               numbers[SplitStates::Index(body, row + 2)]};
        };
        for (int32 i = 0; i < 4; i++) {
            stepper_.SetBody(i, at(states.High(), i, 0), at(states.High(), i, 3),
                             system[static_cast<std::size_t>(i)].gm);
            stepper_.SetLow(i, at(states.Low(), i, 0), at(states.Low(), i, 3));
        }
        stepper_.Start(kTolerance, end, true);
        EXPECT_LE(PositionError(RunTo(&stepper_, 0.0), system), mostError) << orbits << " orbits";
        EXPECT_LT(stepper_.Step().Length(), 0.0);
    }
}

TEST_F(SeriesStepperTest, SeriesAreTheMotionWithinAStep) {
    for (const PointSystem& system :
         {FigureEight(), Cluster(13, 13), Cluster(30, 12), Cluster(70, 70), Cluster(140, 120)})
        for (const int32 order : {8, 16, 24}) {
            Start(system, order, 1e-13);
            for (int i = 0; i < 3; i++) {
                ASSERT_EQ(MakeStep(), SeriesStepper::Result::kDone);
                for (const double share : {0.0, 0.3, 1.0})
                    EXPECT_LE(ForceError(&stepper_, share * stepper_.Step().Theta()), 2e-10)
                        << system.size() << " bodies, order " << order << ", " << share;
            }
        }
}

TEST_F(SeriesStepperTest, ReportsHowPathsBend) {
    constexpr double kDegree = std::numbers::pi / 180;
    for (const double eccentricity : {0.0, 0.6, 0.95})
        for (const double tolerance : {1e-16, 1e-6}) {
            Start(KeplerPair(eccentricity), 16, tolerance);
            int32 parts = 0;
            for (int i = 0; i < 100; i++) {
                ASSERT_EQ(MakeStep(), SeriesStepper::Result::kDone);
                const SeriesStep& step = stepper_.Step();
                parts = std::max(parts, step.Parts());
                ThreeVector before = step.BodyAt(1, 0.0).velocity;
                for (int32 part = 1; part <= step.Parts(); part++) {
                    const ThreeVector now = step.BodyAt(1, step.ThetaOf(part)).velocity;
                    const double cross = before.x * now.y - before.y * now.x;
                    const double dot = before.x * now.x + before.y * now.y;
                    // A step of more than half a turn has no room for more.
                    if (step.Parts() == 32) break;
                    ASSERT_LE(std::fabs(std::atan2(cross, dot)), 6 * kDegree)
                        << eccentricity << ", " << tolerance << ", part " << part << " of "
                        << step.Parts();
                    before = now;
                }
            }
            EXPECT_GT(parts, 1);
        }
}

TEST_F(SeriesStepperTest, FailsLoudly) {
    const PointBody sun{{}, {}, kSolarGM};
    for (const PointSystem& lonely : {PointSystem{}, {sun}, Cluster(9, 0)}) {
        Start(lonely, 16);
        EXPECT_EQ(MakeStep(), SeriesStepper::Result::kNothingPulls);
    }
    Start({sun, {{1e11, 0, 0}, {}, 1e10}, {{1e11, 0, 0}, {}, 1e10}}, 16);
    EXPECT_EQ(MakeStep(), SeriesStepper::Result::kNotFinite);
    // Bodies that fall onto each other never pass through one another's centres unseen.
    Start({sun, {{0.01 * kAstronomicalUnit, 0, 0}, {}, kSolarGM}, {{1e13, 0, 0}, {}, 1e10}}, 16);
    SeriesStepper::Result result{};
    for (int i = 0; i < 100'000; i++)
        if ((result = MakeStep()) != SeriesStepper::Result::kDone) break;
    EXPECT_EQ(result, SeriesStepper::Result::kTimeStands);
    const double* const begin = stepper_.Begin().High();
    EXPECT_LE(std::fabs(begin[SplitStates::Index(1, 0)] - begin[SplitStates::Index(0, 0)]), 1e4);
    stop_.pauseCount = 1;
    Start(Cluster(20, 20), 16);
    EXPECT_EQ(MakeStep(), SeriesStepper::Result::kStopped);
    stop_.pauseCount = 0;
    EXPECT_EQ(MakeStep(), SeriesStepper::Result::kDone);
}

TEST_F(SeriesStepperTest, OrderFollowsFromTheCountsOfBodies) {
    EXPECT_EQ(SeriesForces::OrderFor(5, 2), 8);
    EXPECT_EQ(SeriesForces::OrderFor(13, 2), 16);
    EXPECT_EQ(SeriesForces::OrderFor(99, 16), 24);
    EXPECT_EQ(SeriesForces::OrderFor(16, 1400), 16);
    EXPECT_EQ(SeriesForces::OrderFor(24, 1400), 16);
    EXPECT_EQ(SeriesForces::OrderFor(16, 5000), 8);
    // More bodies than their pairs have room for at the least order: series are the same motion.
    Start(Cluster(2100, 2090), 16, 1e-10);
    ASSERT_EQ(stepper_.Order(), 8);
    ASSERT_EQ(MakeStep(), SeriesStepper::Result::kDone);
    EXPECT_LE(ForceError(&stepper_, stepper_.Step().Theta()), 1e-7);
}

TEST_F(SeriesStepperTest, StepsAllocateNothing) {
    for (const PointSystem& system : {Cluster(3, 3), Cluster(60, 50)}) {
        Start(system, 16);
        ASSERT_EQ(MakeStep(), SeriesStepper::Result::kDone);
        const auto before = CountAllocations();
        for (int i = 0; i < 3; i++)
            ASSERT_EQ(MakeStep(), SeriesStepper::Result::kDone);
        EXPECT_EQ(CountAllocations(), before);
    }
}
