#include "Exchange/PlummerSphere.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

double Square(const ThreeVector& v) {
    return Dot(v, v);
}

TEST(PlummerSphere, SameSeedSameBitsOnEveryMachine) {
    const PlummerStar last = PlummerSphere(1000, 1.0, 1.0, 1911).back();
    EXPECT_EQ(last.position,
              (ThreeVector{-0x1.52b781c84e4d3p-1, 0x1.3381ff879a478p+0, -0x1.53571406c8eb6p-6}));
    EXPECT_EQ(last.velocity,
              (ThreeVector{-0x1.f4dac0b0cec18p-5, 0x1.0512df33d209p-2, -0x1.2045226ffe405p-2}));
    EXPECT_FALSE(PlummerSphere(1000, 1.0, 1.0, 1912).back().position == last.position);
}

// With GM = a = 1: half of the mass within 1.30 a, slightly less as it ends at ten lengths; kinetic
// energy T = 3 pi / 64, half of what binds the sphere.
TEST(PlummerSphere, IsACloudInBalance) {
    constexpr int kCount = 2000;
    std::vector<double> radii;
    double kinetic = 0.0;
    for (const PlummerStar& star : PlummerSphere(kCount, 1.0, 1.0, 7)) {
        radii.push_back(std::sqrt(Square(star.position)));
        kinetic += 0.5 * Square(star.velocity) / kCount;
    }
    std::ranges::sort(radii);
    EXPECT_LT(radii.back(), 10.0);
    EXPECT_NEAR(radii[kCount / 2], 1.28, 0.08);
    EXPECT_NEAR(kinetic / (3.0 * std::numbers::pi / 64.0), 1.0, 0.05);
}

}  // namespace
