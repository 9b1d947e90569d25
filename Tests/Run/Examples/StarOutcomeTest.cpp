// What the examples of stars, choreographies and asteroids state, against the literature that is
// named beside.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Tests/Run/Examples/ExampleRun.h"

using namespace examples;

namespace {

constexpr double kPi = std::numbers::pi;
// Of the units in which the Sun's mass, the astronomical unit and the gravitational constant are 1.
const double kNaturalTime = std::sqrt(kAU * kAU * kAU / 1.3271244e20);

double Side(const Moment& moment, const char* first, const char* second) {
    return Length(moment.Between(first, second).position) / kAU;
}

// The figure eight closes after 6.32591398 natural units of time (Simo 2001).
TEST(StarOutcomes, TheFigureEightCloses) {
    const std::vector<Moment> moments =
        RunExample("figure-eight", {0.0, 6.32591398 * kNaturalTime});
    ASSERT_FALSE(moments.empty());
    for (const auto& [name, state] : moments[0].bodies) {
        const ThreeVector off = moments[1].bodies.at(name).position - state.position;
        EXPECT_LT(Length(off) / kAU, 1e-6) << name;
    }
}

// The masses 4 and 5 end as a pair, the mass 3 escapes, by the time 60 (Szebehely and Peters 1967).
TEST(StarOutcomes, TheLightestOfBurrausThreeLeaves) {
    const std::vector<Moment> moments =
        RunExample("pythagorean", {0.0, 70.0 * kNaturalTime, 100.0 * kNaturalTime});
    ASSERT_FALSE(moments.empty());
    constexpr double kSolarGM = 1.3271244e20;
    EXPECT_NEAR(Side(moments[0], "Three", "Four"), 5.0, 1e-9);
    for (const std::size_t later : {1, 2}) {
        const OrbitalElements pair = moments[later].Orbit("Four", "Five", 9.0 * kSolarGM);
        EXPECT_LT(pair.eccentricity, 1.0);
        EXPECT_LT(pair.SemiMajorAxis() / kAU, 2.0);
    }
    EXPECT_GT(Side(moments[2], "Three", "Five"), Side(moments[1], "Three", "Five") + 5.0);
}

// Plummer's sphere is in balance: half of its stars stay within 1.305 lengths (Binney and Tremaine
// 2008, table 4.6), less what is left out beyond ten lengths.
TEST(StarOutcomes, TheClusterKeepsItsSize) {
    const std::vector<Moment> moments = RunExample("cluster", {0.0, 300.0 * kYear});
    ASSERT_FALSE(moments.empty());
    for (const Moment& moment : moments)
        EXPECT_NEAR(moment.MedianDistance() / (10000.0 * kAU), 1.28, 0.07);
    EXPECT_EQ(moments[1].bodies.size(), 1000u);
}

// What is let go at rest at a radius with half of the mass inside falls through in pi/2
// sqrt(r3 / 2 GM): 15,450 years (Binney and Tremaine 2008, section 2.2).
TEST(StarOutcomes, TheColdClusterCollapsesAndMerges) {
    const std::vector<Moment> moments =
        RunExample("cold-cluster", {0.0, 15450.0 * kYear, 36000.0 * kYear});
    ASSERT_FALSE(moments.empty());
    const double start = moments[0].MedianDistance();
    EXPECT_LT(moments[1].MedianDistance(), 0.5 * start);
    EXPECT_GT(moments[2].MedianDistance(), 1.2 * moments[1].MedianDistance());
    EXPECT_EQ(moments[0].bodies.size(), 100u);
    EXPECT_LE(moments[1].bodies.size(), 97u);
    EXPECT_GE(moments[2].bodies.size(), 50u);
}

// Three equal masses on a ring of radius 1 turn in 2 pi 3^(1/4), and a disturbance grows by
// e^(sqrt(2) pi) a turn (Routh 1875): rounded digits break the ring after eight.
TEST(StarOutcomes, TheRingOfThreeTurnsAndBreaks) {
    const double turn = 2.0 * kPi * std::pow(3.0, 0.25) * kNaturalTime;
    const std::vector<Moment> moments =
        RunExample("lagrange-ring", {0.0, turn, 4.0 * turn, 14.0 * turn});
    ASSERT_FALSE(moments.empty());
    const ThreeVector off =
        moments[1].bodies.at("Ada").position - moments[0].bodies.at("Ada").position;
    EXPECT_LT(Length(off) / kAU, 1e-9);
    EXPECT_NEAR(Side(moments[2], "Ada", "Bea"), std::sqrt(3.0), 1e-4);
    EXPECT_NEAR(Side(moments[2], "Bea", "Cleo"), std::sqrt(3.0), 1e-4);
    EXPECT_GT(std::abs(Side(moments[3], "Ada", "Bea") - Side(moments[3], "Bea", "Cleo")), 0.1);
}

// A pair turns a planet's ellipse at 3/4 m1 m2 / (m1 + m2)2 (a_pair / a)2 n / (1 - e2)2 (Moriwaki
// and Nakagawa 2004, to the lowest order; the next ones are about 0.05 of it here).
TEST(StarOutcomes, ThePairTurnsThePlanetsEllipse) {
    // The ellipse wobbles with the planet's own turns; so many of them are seen that it is little.
    const std::vector<Moment> moments = RunExample("precession", Times(80.0 * kYear, 401));
    ASSERT_FALSE(moments.empty());
    constexpr double kPairGM = 1.4 * 1.3271244e20;
    double turned = 0.0;
    double before = 0.0;
    for (const Moment& moment : moments) {
        const RelativeState first = moment.Between("Sun A", "Sun B");
        RelativeState planet = moment.Between("Sun A", "Planet");
        planet.position -= (0.4 / 1.4) * first.position;
        planet.velocity -= (0.4 / 1.4) * first.velocity;
        const OrbitalElements orbit = ElementsOf(planet, kPairGM);
        EXPECT_NEAR(orbit.eccentricity, 0.245, 0.015);
        const double periapsis = (orbit.node + orbit.argumentOfPeriapsis) / kDegree;
        turned += Turned(before, periapsis);
        before = periapsis;
    }
    const double a = 0.8 * kAU;
    const double n = std::sqrt(kPairGM / (a * a * a));
    const double shape = 1.0 - 0.25 * 0.25;
    const double rate =
        0.75 * (0.4 / (1.4 * 1.4)) * (0.15 / 0.8) * (0.15 / 0.8) * n / (shape * shape);
    EXPECT_NEAR(turned * kDegree / (rate * 80.0 * kYear), 1.04, 0.06);
}

// From a nearly round orbit the eccentricity grows to sqrt(1 - 5/3 cos2 i), and sqrt(1 - e2) cos i
// stays (Lidov 1962, Kozai 1962; Naoz 2016, section 3).
TEST(StarOutcomes, TheFarStarStretchesTheOrbitAndRoundsItAgain) {
    const std::vector<Moment> moments = RunExample("kozai", Times(5000.0 * kYear, 501));
    ASSERT_FALSE(moments.empty());
    double longest = 0.0;
    const double upright = std::cos(65.0 * kDegree);
    for (const Moment& moment : moments) {
        const OrbitalElements orbit = moment.Orbit("Sun", "Planet", 1.3271244e20);
        const double e = orbit.eccentricity;
        longest = std::max(longest, e);
        EXPECT_NEAR(std::sqrt(1.0 - e * e) * std::cos(orbit.inclination), upright, 0.035);
    }
    EXPECT_NEAR(longest, std::sqrt(1.0 - 5.0 / 3.0 * upright * upright), 0.03);
    EXPECT_LT(moments.back().Orbit("Sun", "Planet", 1.3271244e20).eccentricity, 0.15);
}

// In the 3:1 resonance, at 2.50 AU, Jupiter stretches orbits that it leaves alone elsewhere (Wisdom
// 1982): within 6,000 years their largest eccentricities are half as large again as the others'.
TEST(StarOutcomes, ResonanceStretchesOrbitsInKirkwoodsGap) {
    const std::vector<Moment> moments = RunExample("kirkwood", Times(6000.0 * kYear, 13));
    ASSERT_FALSE(moments.empty());
    double inside = 0.0;
    double outside = 0.0;
    int insiders = 0;
    int outsiders = 0;
    for (int number = 1; number <= 1000; number++) {
        const std::string name = "Asteroid " + std::to_string(number);
        double longest = 0.0;
        for (const Moment& moment : moments)
            longest = std::max(longest, moment.Orbit("Sun", name, kSunGM).eccentricity);
        const double a = 2.4 + 0.2 * (number - 1) / 999.0;
        if (std::abs(a - 2.5) < 0.005) inside += longest, insiders++;
        if (std::abs(a - 2.5) > 0.05) outside += longest, outsiders++;
    }
    ASSERT_GT(insiders, 40);
    EXPECT_GT(inside / insiders, 1.5 * outside / outsiders);
    EXPECT_LT(outside / outsiders, 0.13);
}

}  // namespace
