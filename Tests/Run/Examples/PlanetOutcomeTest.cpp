// What the examples of planets and moons state, against the literature that is named beside.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Tests/Run/Examples/ExampleRun.h"

using namespace examples;

namespace {

// Sidereal periods: NASA Space Science Data Coordinated Archive, planetary fact sheets. Mean
// periods; in one turn neighbours shift a planet by some thousandths of it.
TEST(PlanetOutcomes, PlanetsCloseTheirTracksAfterTheirYears) {
    const std::pair<const char*, double> kYears[] = {
        {"Mercury", 87.969}, {"Venus", 224.701}, {"Earth and Moon", 365.256}, {"Mars", 686.980}};
    std::vector<double> times{0.0};
    for (const auto& [planet, days] : kYears)
        times.push_back(days * kDay);
    const std::vector<Moment> moments = RunExample("planets", times);
    ASSERT_FALSE(moments.empty());
    for (std::size_t i = 1; i < moments.size(); i++) {
        const char* const planet = kYears[i - 1].first;
        EXPECT_NEAR(
            Turned(moments[0].Longitude("Sun", planet), moments[i].Longitude("Sun", planet)), 0.0,
            0.05)
            << planet;
    }
    // The Earth at noon on 1 January 2000, seen from the Sun: Astronomical Almanac 2000.
    EXPECT_NEAR(moments[0].Longitude("Sun", "Earth and Moon"), 100.4, 0.1);
    EXPECT_NEAR(Length(moments[0].Between("Sun", "Earth and Moon").position) / kAU, 0.9833, 3e-4);
}

// Great conjunctions come every 19.859 years in the mean: Meeus, Mathematical Astronomy Morsels
// (1997).
TEST(PlanetOutcomes, JupiterPassesSaturnEveryTwentyYears) {
    const std::vector<Moment> moments = RunExample("outer-planets", Times(220.0 * kYear, 2201));
    std::vector<double> passages;
    double before = 0.0;
    for (const Moment& moment : moments) {
        const double ahead =
            Turned(moment.Longitude("Sun", "Saturn"), moment.Longitude("Sun", "Jupiter"));
        if (before < 0.0 && ahead >= 0.0 && ahead < 90.0) passages.push_back(moment.time / kYear);
        before = ahead;
    }
    ASSERT_GE(passages.size(), 10u);
    const double mean =
        (passages.back() - passages.front()) / static_cast<double>(passages.size() - 1);
    EXPECT_NEAR(mean, 19.859, 0.15);
}

// The Moon's sidereal month has 27.32 days (NASA, Moon fact sheet); without the Sun 27.28 by
// Kepler's third law.
TEST(PlanetOutcomes, TheMoonIsBackAfterAMonthAndKeepsItsSatellite) {
    const std::vector<Moment> moments = RunExample("earth-moon", Times(27.285 * kDay, 200));
    ASSERT_FALSE(moments.empty());
    EXPECT_NEAR(Turned(moments.front().Longitude("Earth", "Moon"),
                       moments.back().Longitude("Earth", "Moon")),
                0.0, 1.0);
    constexpr double kMoonGM = 4.902800118e12;
    for (const Moment& moment : moments) {
        const OrbitalElements orbit = moment.Orbit("Moon", "Spacecraft", kMoonGM);
        EXPECT_NEAR(orbit.Period() / kDay, 1.908, 0.12);
        EXPECT_LT(orbit.eccentricity, 0.25);
    }
}

// Kepler-16 b: 228.776 days by its osculating orbit, which the pair's quadrupole shortens by a few
// parts in a hundred, and always near its 0.7048 AU (Doyle et al. 2011).
TEST(PlanetOutcomes, TheCircumbinaryPlanetStays) {
    const std::vector<Moment> moments =
        RunExample("circumbinary", Times(228.776 * kDay * 10.0, 400));
    ASSERT_FALSE(moments.empty());
    for (Moment moment : moments) {
        const double distance = Length(moment.bodies["Planet"].position) / kAU;
        EXPECT_GT(distance, 0.63);
        EXPECT_LT(distance, 0.78);
    }
    double turned = 0.0;
    for (std::size_t i = 1; i < moments.size(); i++)
        turned += Turned(moments[i - 1].Longitude("Sun A", "Planet"),
                         moments[i].Longitude("Sun A", "Planet"));
    EXPECT_NEAR(turned / 3600.0, 1.025, 0.02);
}

// Small librations about the triangular points take 1 / sqrt(27/4 mu) orbits of Jupiter: 147.8
// years (Murray and Dermott 1999, section 3.8).
TEST(PlanetOutcomes, TrojansLibrate) {
    const std::vector<Moment> moments = RunExample("trojans", Times(600.0 * kYear, 601));
    ASSERT_FALSE(moments.empty());
    std::vector<double> passages;
    double before = 0.0;
    for (const Moment& moment : moments) {
        const double jupiter = moment.Longitude("Sun", "Jupiter");
        const auto ahead = [&](const char* name) {
            return Turned(jupiter, moment.Longitude("Sun", name));
        };
        for (const char* const leader : {"Leader", "Wide leader", "Eccentric leader"}) {
            EXPECT_GT(ahead(leader), 30.0) << leader;
            EXPECT_LT(ahead(leader), 100.0) << leader;
        }
        for (const char* const follower : {"Follower", "Wide follower"}) {
            EXPECT_LT(ahead(follower), -30.0) << follower;
            EXPECT_GT(ahead(follower), -100.0) << follower;
        }
        const double now = ahead("Leader") - 60.0;
        if (before > 0.0 && now <= 0.0) passages.push_back(moment.time / kYear);
        before = now;
    }
    ASSERT_GE(passages.size(), 3u);
    const double period =
        (passages.back() - passages.front()) / static_cast<double>(passages.size() - 1);
    EXPECT_NEAR(period, 147.8, 5.0);
}

// Janus and Epimetheus change places every four years and come no nearer to one another than some
// 10,000 km (Yoder et al., Icarus 53, 1983; Murray and Dermott 1999, section 3.12).
TEST(PlanetOutcomes, MoonsOnAHorseshoeChangePlacesEveryFourYears) {
    const std::vector<Moment> moments = RunExample("horseshoe", Times(16.0 * kYear, 321));
    constexpr double kSaturnGM = 3.79312077e16;
    std::vector<double> changes;
    double before = 0.0;
    double nearest = 1e12;
    for (const Moment& moment : moments) {
        const double difference = moment.Orbit("Saturn", "Epimetheus", kSaturnGM).SemiMajorAxis() -
                                  moment.Orbit("Saturn", "Janus", kSaturnGM).SemiMajorAxis();
        if (before * difference < 0.0) changes.push_back(moment.time / kYear);
        before = difference;
        nearest = std::min(nearest, Length(moment.Between("Janus", "Epimetheus").position));
    }
    ASSERT_EQ(changes.size(), 4u);
    EXPECT_NEAR((changes[3] - changes[0]) / 3.0, 4.0, 0.1);
    EXPECT_GT(nearest, 1.0e7);
    EXPECT_LT(nearest, 2.0e7);
}

// Neighbours' years are nearly as small whole numbers, and the angle of f, g and h stays about 180
// degrees (Luger et al., Nature Astronomy 1, 2017; Agol et al. 2021).
TEST(PlanetOutcomes, PlanetsOfTrappistKeepStep) {
    const std::vector<Moment> moments = RunExample("trappist-1", Times(1000.0 * kDay, 101));
    ASSERT_FALSE(moments.empty());
    constexpr double kStarGM = 0.0898 * 1.3271244e20;
    const char* const kPlanets[] = {"b", "c", "d", "e", "f", "g", "h"};
    constexpr double kRatios[] = {8.0 / 5.0, 5.0 / 3.0, 3.0 / 2.0, 3.0 / 2.0, 4.0 / 3.0, 3.0 / 2.0};
    for (const Moment& moment : moments) {
        double longitude[7];
        double period[7];
        for (int i = 0; i < 7; i++) {
            const OrbitalElements orbit =
                moment.Orbit("TRAPPIST-1", std::string("TRAPPIST-1 ") + kPlanets[i], kStarGM);
            EXPECT_LT(orbit.eccentricity, 0.05) << kPlanets[i];
            longitude[i] = (orbit.node + orbit.argumentOfPeriapsis + orbit.MeanAnomaly()) / kDegree;
            period[i] = orbit.Period();
        }
        for (int i = 0; i < 6; i++)
            EXPECT_NEAR(period[i + 1] / period[i] / kRatios[i], 1.0, 0.02) << kPlanets[i];
        const double laplace = longitude[4] - 2.0 * longitude[5] + longitude[6];
        EXPECT_NEAR(Turned(180.0, laplace), 0.0, 35.0) << moment.time / kDay;
    }
}

// An unbound flight past Jupiter: as fast after it as before, and turned by 2 asin(1/e) (Bate,
// Mueller and White 1971, section 8.5); with regard to the Sun it was bound and is so no more.
TEST(PlanetOutcomes, TheSlingshotThrowsTheProbeOut) {
    const std::vector<Moment> moments =
        RunExample("slingshot", {0.0, 1.9 * kYear, 2.004 * kYear, 2.11 * kYear, 8.0 * kYear});
    ASSERT_FALSE(moments.empty());
    EXPECT_NEAR(moments[0].Orbit("Sun", "Probe", kSunGM).SemiMajorAxis() / kAU, 3.3, 1e-3);
    EXPECT_GT(moments[4].Orbit("Sun", "Probe", kSunGM).eccentricity, 1.2);
    constexpr double kJupiterGM = 1.267127641e17;
    const OrbitalElements flight = moments[2].Orbit("Jupiter", "Probe", kJupiterGM);
    EXPECT_NEAR(flight.periapsisDistance / 71492e3, 1.77, 0.05);
    const ThreeVector in = moments[1].Between("Jupiter", "Probe").velocity;
    const ThreeVector out = moments[3].Between("Jupiter", "Probe").velocity;
    EXPECT_NEAR(Length(out) / Length(in), 1.0, 0.1);
    const double turned = std::acos(Dot(in, out) / (Length(in) * Length(out))) / kDegree;
    EXPECT_NEAR(turned, 2.0 * std::asin(1.0 / flight.eccentricity) / kDegree, 12.0);
}

// A pair that passes a planet can part, one of it staying, against the planets' sense (Agnor and
// Hamilton 2006).
TEST(PlanetOutcomes, NeptuneCapturesTriton) {
    const std::vector<Moment> moments = RunExample("capture", {0.0, 60.0 * kDay, 300.0 * kDay});
    ASSERT_FALSE(moments.empty());
    constexpr double kNeptuneGM = 6.83652710058e15;
    constexpr double kPairGM = 1.428e12 + 8.6e12;
    EXPECT_NEAR(moments[0].Orbit("Triton", "Partner", kPairGM).SemiMajorAxis(), 2e7, 1e3);
    for (const std::size_t later : {1, 2}) {
        const OrbitalElements orbit = moments[later].Orbit("Neptune", "Triton", kNeptuneGM);
        EXPECT_NEAR(orbit.SemiMajorAxis(), 6.0e8, 0.2e8);
        EXPECT_NEAR(orbit.eccentricity, 0.83, 0.02);
        EXPECT_NEAR(orbit.inclination, std::numbers::pi, 1e-6);
        EXPECT_GT(moments[later].Orbit("Neptune", "Partner", kNeptuneGM).eccentricity, 1.02);
    }
}

}  // namespace
