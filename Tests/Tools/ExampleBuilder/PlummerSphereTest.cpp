#include "PlummerSphere.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

double Square(const ThreeVector& v) {
    return v.x * v.x + v.y * v.y + v.z * v.z;
}

TEST(PlummerSphere, SameSeedSameBitsOnEveryMachine) {
    const PlummerStar last = PlummerSphere(1000, 1.0, 1.0, 1911).back();
    EXPECT_EQ(last.position,
              (ThreeVector{-0x1.52b781c84e4d3p-1, 0x1.3381ff879a478p+0, -0x1.53571406c8eb6p-6}));
    EXPECT_EQ(last.velocity,
              (ThreeVector{-0x1.f4dac0b0cec18p-5, 0x1.0512df33d209p-2, -0x1.2045226ffe405p-2}));
    EXPECT_FALSE(PlummerSphere(1000, 1.0, 1.0, 1912).back().position == last.position);
}

TEST(PlummerSphere, IsACloudInBalance) {
    // With GM = a = 1: half of the mass within 1.30 a, half of it cut at ten lengths slightly less;
    // energy U = -3 pi / 32 and T = -U / 2 for the whole sphere.
    constexpr int kCount = 2000;
    const std::vector<PlummerStar> stars = PlummerSphere(kCount, 1.0, 1.0, 7);
    std::vector<double> radii;
    double kinetic = 0.0;
    double potential = 0.0;
    ThreeVector mean;
    for (int i = 0; i < kCount; ++i) {
        const PlummerStar& star = stars[static_cast<std::size_t>(i)];
        radii.push_back(std::sqrt(Square(star.position)));
        kinetic += 0.5 * Square(star.velocity) / kCount;
        mean += (1.0 / kCount) * star.position;
        for (int j = 0; j < i; ++j)
            potential -=
                1.0 /
                std::sqrt(Square(star.position - stars[static_cast<std::size_t>(j)].position));
    }
    potential /= static_cast<double>(kCount) * kCount;
    std::ranges::sort(radii);
    EXPECT_LT(radii.back(), 10.0);
    EXPECT_NEAR(radii[kCount / 2], 1.28, 0.08);
    EXPECT_NEAR(2.0 * kinetic / -potential, 1.0, 0.05);
    EXPECT_LT(std::sqrt(Square(mean)), 0.15);
}

}  // namespace
