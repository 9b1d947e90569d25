#include "Displays/Comparison/Separation.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Tests/Simulation/Document/SampleDocument.h"

namespace {

constexpr double kRadius = 1.5e11;
constexpr double kPlenty = 1e9;
const double kRate = std::sqrt(kSunGM / (kRadius * kRadius * kRadius));

// A massless body on a circle, so far along.
SystemState StateAt(double angle) {
    SystemState state;
    state.time = angle / kRate;
    state.ids = {0, 1};
    state.names = {"Sun", "Earth"};
    state.gm = {kSunGM, 0.0};
    const double speed = kRate * kRadius;
    state.positions = {0, 0, 0, kRadius * std::cos(angle), kRadius * std::sin(angle), 0};
    state.velocities = {0, 0, 0, -speed * std::sin(angle), speed * std::cos(angle), 0};
    return state;
}

BodyPlaces PlacesAt(double angle, double further = 0.0) {
    const double radius = kRadius + further;
    return {angle / kRate,
            {1, 7, 0},
            {{radius * std::cos(angle), radius * std::sin(angle), 0}, {1e20, 0, 0}, {}}};
}

}  // namespace

TEST(Separation, IsTheLargestOfBodiesThatBothHave) {
    SystemState state = StateAt(0.0);
    const auto same = LargestSeparation(state, PlacesAt(0.0), 0.0);
    ASSERT_TRUE(same);
    EXPECT_EQ(same->distance, 0.0);
    const auto apart = LargestSeparation(state, PlacesAt(0.0, 5000.0), 0.0);
    ASSERT_TRUE(apart);
    EXPECT_EQ(apart->body, 1);
    EXPECT_EQ(apart->distance, 5000.0);
    state.ids = {2, 3};
    EXPECT_FALSE(LargestSeparation(state, PlacesAt(0.0), kPlenty));
}

TEST(Separation, CarriesAReportToTheTimeOfTheOtherRunToTheMillimetre) {
    // As far as reports of a series may lie, both ways.
    for (const double way : {1e-4, -1e-4, 0.3, -0.3}) {
        const auto none = LargestSeparation(StateAt(0.0), PlacesAt(way), kPlenty);
        ASSERT_TRUE(none);
        EXPECT_LT(none->distance, 2e-4) << way;
        const auto little = LargestSeparation(StateAt(0.0), PlacesAt(way, 0.001), kPlenty);
        ASSERT_TRUE(little);
        EXPECT_NEAR(little->distance, 0.001, 2e-4) << way;
    }
    // What would take too long is not begun.
    EXPECT_FALSE(LargestSeparation(StateAt(0.0), PlacesAt(0.3), 1000.0));
}
