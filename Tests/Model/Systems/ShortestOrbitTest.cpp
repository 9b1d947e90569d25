#include "Model/Systems/ShortestOrbit.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Model/Systems/Body.h"

namespace {

constexpr double kSun = 1.3271244e20;
constexpr double kEarth = 3.986004e14;
constexpr double kDay = 86400.0;

Body Make(double gm, ThreeVector position, ThreeVector velocity) {
    Body body("", 0, {}, {}, -2);
    body.SetM(gm);
    body.SetPosition(position);
    body.SetVelocity(velocity);
    return body;
}

}  // namespace

TEST(ShortestOrbit, IsThatOfTheMoonAmongSunEarthAndMoon) {
    Body sun = Make(kSun, {}, {});
    Body earth = Make(kEarth, {1.495979e11, 0, 0}, {0, 29785.0, 0});
    Body moon = Make(0.0, {1.495979e11 + 3.844e8, 0, 0}, {0, 29785.0 + 1018.3, 0});
    Body comet = Make(0.0, {0, 1e11, 0}, {6e4, 0, 0});  // flies away
    EXPECT_NEAR(ShortestOrbit({&sun, &earth, &moon, &comet}), 27.45 * kDay, 0.1 * kDay);
    EXPECT_NEAR(ShortestOrbit({&sun, &earth, &comet}), 365.25 * kDay, 0.2 * kDay);
    // Two digits, four seconds.
    EXPECT_DOUBLE_EQ(AutoPace({&sun, &earth, &moon, &comet}), 590'000.0);
    EXPECT_TRUE(std::isinf(AutoPace({&sun, &comet})));
    EXPECT_TRUE(std::isinf(AutoPace({&moon, &comet})));
    EXPECT_TRUE(std::isinf(AutoPace({})));
}

// Its ellipse is half as long as the way down.
TEST(ShortestOrbit, OfABodyThatFallsFromRestIsTwiceItsFall) {
    Body earth = Make(kEarth, {}, {});
    Body stone = Make(0.0, {6.4e8, 0, 0}, {});
    const double axis = 3.2e8;
    EXPECT_NEAR(
        ShortestOrbit({&earth, &stone}) / (2.0 * M_PI * std::sqrt(axis * axis * axis / kEarth)),
        1.0, 1e-12);
}
