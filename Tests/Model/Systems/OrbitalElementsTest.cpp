// Orbits of every kind, there and back, against closed forms and against each other.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "Model/Systems/Body.h"
#include "Model/Systems/CompositeSystem.h"
#include "Model/Systems/OrbitalElements.h"
#include "Model/Systems/SystemOrbits.h"

namespace {

using std::numbers::pi;

double Distance(const ThreeVector& a, const ThreeVector& b) {
    return Length(a - b);
}

OrbitalElements Orbit(double eccentricity, double inclination, double anomaly) {
    OrbitalElements orbit{.periapsisDistance = 0.7e11,
                          .eccentricity = eccentricity,
                          .inclination = inclination,
                          .gravitationalParameter = 1.3e20};
    orbit.node = std::sin(inclination) > 1e-10 ? 4.0 : 0.0;
    orbit.argumentOfPeriapsis = 1.0;
    EXPECT_TRUE(SetElement(OrbitalElement::kTrueAnomaly, anomaly, &orbit));
    return orbit;
}

TEST(OrbitalElements, StatesComeBackFromTheirElements) {
    for (const double e : {0.0, 1e-8, 0.5, 0.999, 1.0, 1.5})
        for (const double inclination : {0.0, 1e-9, 1.1, pi}) {
            const double most = e < 1.0 ? pi : 0.95 * std::acos(-1.0 / e);
            for (int k = -20; k <= 20; k++) {
                const double anomaly = most * k / 20.0;
                const OrbitalElements orbit = Orbit(e, inclination, anomaly);
                const RelativeState state = StateOf(orbit);
                // The equation of the conic, and the vis-viva equation.
                const double radius =
                    orbit.periapsisDistance * (1.0 + e) / (1.0 + e * std::cos(anomaly));
                EXPECT_NEAR(Length(state.position) / radius, 1.0, 1e-12) << e << ' ' << anomaly;
                const double energy = orbit.gravitationalParameter *
                                      (2.0 / radius - (1.0 - e) / orbit.periapsisDistance);
                EXPECT_NEAR(Length(state.velocity), std::sqrt(energy), 1e-12 * std::sqrt(energy));

                const OrbitalElements again = ElementsOf(state, orbit.gravitationalParameter);
                const RelativeState back = StateOf(again);
                EXPECT_LE(Distance(back.position, state.position), 1e-12 * radius) << e << ' ' << k;
                EXPECT_LE(Distance(back.velocity, state.velocity), 1e-12 * Length(state.velocity));
                // What an element is worth depends on how well it is determined.
                EXPECT_NEAR(again.eccentricity, e, 2e-15 * (1.0 + e));
                EXPECT_NEAR(again.inclination, inclination, 2e-15);
                if (e < 1e-4) continue;
                EXPECT_NEAR(std::remainder(again.TrueAnomaly() - anomaly, 2.0 * pi), 0.0, 1e-11);
                if (std::sin(inclination) > 0.1) {
                    EXPECT_NEAR(again.node, 4.0, 1e-12);
                    EXPECT_NEAR(again.argumentOfPeriapsis, 1.0, 1e-12 / e);
                }
            }
        }
}

TEST(OrbitalElements, TimeRunsByTheEquationsOfKeplerAndBarker) {
    const OrbitalElements ellipse = Orbit(0.6, 0.4, 2.0);
    const double half = std::tan(1.0) * std::sqrt(0.4 / 1.6);
    const double eccentric = 2.0 * std::atan(half);
    EXPECT_NEAR(ellipse.MeanAnomaly(), eccentric - 0.6 * std::sin(eccentric), 1e-14);
    EXPECT_NEAR(ellipse.SemiMajorAxis(), 0.7e11 / 0.4, 1e-3);
    EXPECT_NEAR(ellipse.Period() * ellipse.MeanMotion(), 2.0 * pi, 1e-14);
    OrbitalElements later = ellipse;
    later.timeSincePeriapsis += 3.0 * ellipse.Period();
    EXPECT_LE(Distance(StateOf(later).position, StateOf(ellipse).position), 1.0);

    const OrbitalElements parabola = Orbit(1.0, 0.4, 2.0);
    const double d = std::tan(1.0);
    EXPECT_NEAR(parabola.timeSincePeriapsis,
                std::sqrt(2.0 * 0.7e11 / 1.3e20) * 0.7e11 * (d + d * d * d / 3.0), 1e-6);
    EXPECT_TRUE(std::isinf(parabola.Period()));
    EXPECT_TRUE(std::isinf(parabola.SemiMajorAxis()));

    const OrbitalElements hyperbola = Orbit(1.5, 0.4, 2.0);
    const double anomaly = 2.0 * std::atanh(std::tan(1.0) * std::sqrt(0.5 / 2.5));
    EXPECT_NEAR(hyperbola.MeanAnomaly(), 1.5 * std::sinh(anomaly) - anomaly, 1e-13);
    EXPECT_LT(hyperbola.SemiMajorAxis(), 0.0);
}

TEST(OrbitalElements, OneIsSetAndTheOthersStay) {
    OrbitalElements orbit = Orbit(0.2, 0.3, 1.0);
    const OrbitalElements before = orbit;
    ASSERT_TRUE(SetElement(OrbitalElement::kEccentricity, 0.5, &orbit));
    EXPECT_NEAR(orbit.SemiMajorAxis(), before.SemiMajorAxis(), 1e-3);
    EXPECT_NEAR(orbit.MeanAnomaly(), before.MeanAnomaly(), 1e-15);
    ASSERT_TRUE(SetElement(OrbitalElement::kEccentricity, 1.0, &orbit));
    EXPECT_EQ(orbit.periapsisDistance, before.SemiMajorAxis() * 0.5);
    const OrbitalElements parabola = orbit;
    using Refused = std::pair<OrbitalElement, double>;
    for (const auto& [element, value] :
         {Refused{OrbitalElement::kSemiMajorAxis, 1e11},
          Refused{OrbitalElement::kEccentricity, -0.1},
          Refused{OrbitalElement::kPeriapsisDistance, 0.0},
          Refused{OrbitalElement::kInclination, 3.2}, Refused{OrbitalElement::kNode, NAN}}) {
        EXPECT_FALSE(SetElement(element, value, &orbit)) << value;
        EXPECT_EQ(orbit.Value(element), parabola.Value(element));
    }
    ASSERT_TRUE(SetElement(OrbitalElement::kEccentricity, 2.0, &orbit));
    EXPECT_FALSE(SetElement(OrbitalElement::kTrueAnomaly, 2.2, &orbit));  // beyond the asymptote
}

// A star, and about it a planet with its moon, which are one group.
TEST(SystemOrbits, EverySystemGoesAroundItsReferentOrTheHeaviestBody) {
    const auto body = [](const char* name, int64 id, double gm, ThreeVector r, ThreeVector v,
                         int64 about) {
        auto* const made = new Body(name, id, {}, {}, about);
        made->SetM(gm);
        made->SetPosition(r);
        made->SetVelocity(v);
        return made;
    };
    CompositeSystem root("root", 0, {}, {}, kOriginID);
    auto* const group = new CompositeSystem("group", 4, {}, {}, kOriginID);
    root.AddChild(body("star", 1, 1e20, {5.0, 0.0, 0.0}, {}, kOriginID));
    group->AddChild(body("planet", 2, 3e14, {1e11, 0.0, 0.0}, {0.0, 3e4, 0.0}, kOriginID));
    group->AddChild(body("moon", 3, 1e14, {1e11, 4e8, 0.0}, {-1e3, 3e4, 0.0}, 4));
    root.AddChild(group);

    EXPECT_FALSE(OrbitOf(*root.SystemFromID(1), &root));
    const auto planet = OrbitOf(*root.SystemFromID(2), &root);
    ASSERT_TRUE(planet);
    EXPECT_EQ(planet->about->ID(), 1);
    EXPECT_EQ(planet->elements.gravitationalParameter, 1e20 + 3e14);
    EXPECT_EQ(OrbitOf(*group, &root)->about->ID(), 1);
    // Relative to the group that it belongs to it goes around the rest of that: the planet.
    const auto moon = OrbitOf(*root.SystemFromID(3), &root);
    ASSERT_TRUE(moon);
    EXPECT_EQ(moon->about, group);
    EXPECT_EQ(moon->elements.gravitationalParameter, 4e14);
    EXPECT_NEAR(moon->focus.position.y, 0.0, 1e-6);
    root.SystemFromID(3)->SetRelativeTo(2);
    const auto same = OrbitOf(*root.SystemFromID(3), &root);
    EXPECT_NEAR(moon->elements.eccentricity, same->elements.eccentricity, 1e-12);
    root.SystemFromID(3)->SetPosition(root.SystemFromID(2)->Position());
    EXPECT_FALSE(OrbitOf(*root.SystemFromID(3), &root));
}

}  // namespace
