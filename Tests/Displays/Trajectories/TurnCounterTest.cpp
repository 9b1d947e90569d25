// Trails of so many orbits.
#include "Displays/Trajectories/TurnCounter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

// A circle, run through at a radian a second.
std::vector<Sample> Circle(double from, double to) {
    std::vector<Sample> samples;
    for (double time = from; time <= to; time += 0.1)
        samples.push_back({time,
                           {std::cos(time), std::sin(time), 0.0},
                           {-std::sin(time), std::cos(time), 0.0},
                           time > from});
    return samples;
}

}  // namespace

TEST(TurnCounter, CutsWhereTheDirectionHasTurnedSoOften) {
    std::vector<Sample> newer = Circle(20.0, 30.0);
    std::vector<Sample> older = Circle(0.0, 20.0);
    std::vector<Sample> oldest = Circle(-9.0, 0.0);
    const double end = newer.back().time;
    TurnCounter counter(2.5);
    counter.Cut(&newer);
    EXPECT_EQ(newer.front().time, 20.0);
    counter.Cut(&older);
    ASSERT_FALSE(older.empty());
    EXPECT_NEAR(older.front().time, end - 2.5 * kTurn, 1e-6);
    EXPECT_FALSE(older.front().isJoined);
    EXPECT_TRUE(counter.IsDone());
    counter.Cut(&oldest);
    EXPECT_TRUE(oldest.empty());
}

TEST(TurnCounter, ToAndFroIsNoTurn) {
    std::vector<Sample> samples;
    for (int32_t i = 0; i < 1000; i++) {
        const double angle = 0.3 * std::sin(0.2 * i);
        samples.push_back({1.0 * i, {}, {std::cos(angle), std::sin(angle), 0.0}, i > 0});
    }
    TurnCounter counter(0.5);
    counter.Cut(&samples);
    EXPECT_EQ(samples.size(), 1000U);
}
