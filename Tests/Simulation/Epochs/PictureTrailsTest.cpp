#include "Simulation/Epochs/PictureTrails.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double kMoonRadius = 1e9;
constexpr double kPlanetRadius = 8e11;

// Once about the centre in a month, while the planet goes a hundredth of the way about its star.
std::vector<PictureTrail> StarPlanetMoon() {
    const auto circle = [](double radius, double turns, double part) {
        const double angle = 2.0 * std::numbers::pi * turns * part;
        const double speed = 2.0 * std::numbers::pi * turns * radius;
        return Sample{part,
                      {radius * std::cos(angle), radius * std::sin(angle), 0.0},
                      {-speed * std::sin(angle), speed * std::cos(angle), 0.0},
                      part > 0.0};
    };
    std::vector<PictureTrail> trails{{{255, 255, 0, 255}, 1e20, {}},
                                     {{0, 0, 255, 255}, 1e17, {}},
                                     {{200, 200, 200, 255}, 1e12, {}}};
    for (int i = 0; i <= 40; i++) {
        const double part = i / 40.0;
        trails[0].samples.push_back({part, {}, {}, i > 0});
        trails[1].samples.push_back(circle(kPlanetRadius, 0.01, part));
        Sample moon = circle(kMoonRadius, 1.0, part);
        moon.position += trails[1].samples.back().position;
        moon.velocity += trails[1].samples.back().velocity;
        trails[2].samples.push_back(moon);
    }
    return trails;
}

}  // namespace

TEST(PictureTrails, AMoonIsSeenFromItsPlanet) {
    const std::vector<PictureTrail> seen = TrailsToSee(StarPlanetMoon());
    ASSERT_EQ(seen.size(), 2u) << "planet and moon";
    EXPECT_EQ(seen[1].mass, 1e12);
    const Extent all = ExtentOf(seen);
    EXPECT_NEAR(all.high.x - all.low.x, 2.0 * kMoonRadius, 1e-3 * kMoonRadius);
    for (const Sample& sample : seen[0].samples)
        EXPECT_EQ(sample.position, ThreeVector{});
}

TEST(PictureTrails, WhatIsSeenStaysAsItIs) {
    std::vector<PictureTrail> trails = StarPlanetMoon();
    for (Sample& sample : trails[1].samples)
        sample.position.y = kPlanetRadius * sample.time;
    const std::vector<PictureTrail> seen = TrailsToSee(trails);
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[1].samples.back().position, trails[1].samples.back().position);
    EXPECT_TRUE(TrailsToSee({}).empty());
}

// Two stars that hardly move and circle nothing: the one that moves more fills the picture.
TEST(PictureTrails, OfPointsTheLongestFillsThePicture) {
    std::vector<PictureTrail> trails{
        {{}, 2.0, {{0.0, {}, {}, false}, {1.0, {1.0, 0.0, 0.0}, {}, true}}},
        {{}, 1.0, {{0.0, {1e6, 0.0, 0.0}, {}, false}, {1.0, {1e6, 2.0, 0.0}, {}, true}}}};
    const Extent all = ExtentOf(TrailsToSee(trails));
    EXPECT_LT(all.high.x - all.low.x, 10.0);
    EXPECT_GT(std::max(all.high.x - all.low.x, all.high.y - all.low.y), 0.5);
}
