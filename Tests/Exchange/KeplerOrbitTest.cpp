#include "Exchange/KeplerOrbit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

constexpr double kMu = 1.32712440018e20;  // m3/s2
constexpr double kAu = 1.4959787066e11;   // m
constexpr double kPi = std::numbers::pi;

// The elements of a state by vector algebra: angular momentum, eccentricity vector, line of nodes.
KeplerOrbit ElementsOf(const ThreeVector& r, const ThreeVector& v) {
    const ThreeVector h = Cross(r, v);
    const ThreeVector e = (1.0 / kMu) * Cross(v, h) - (1.0 / Length(r)) * r;
    KeplerOrbit orbit;
    orbit.semiMajorAxis = 1.0 / (2.0 / Length(r) - Dot(v, v) / kMu);
    orbit.eccentricity = Length(e);
    orbit.inclination = std::acos(h.z / Length(h));
    orbit.ascendingNode = std::atan2(h.x, -h.y);
    const ThreeVector node{std::cos(orbit.ascendingNode), std::sin(orbit.ascendingNode), 0.0};
    const ThreeVector ahead = (1.0 / Length(h)) * Cross(h, node);
    orbit.pericentreArgument = std::atan2(Dot(e, ahead), Dot(e, node));
    const double anomaly = std::atan2(Dot(r, v) / std::sqrt(kMu * orbit.semiMajorAxis),
                                      1.0 - Length(r) / orbit.semiMajorAxis);
    orbit.meanAnomaly = anomaly - orbit.eccentricity * std::sin(anomaly);
    return orbit;
}

TEST(KeplerOrbit, StatesGiveTheirElementsBack) {
    for (const double e : {0.0167, 0.25, 0.7, 0.97})
        for (const double inclination : {0.1, 1.2, 3.0})
            for (const double node : {-2.5, 0.4})
                for (const double pericentre : {-1.0, 2.8})
                    for (const double anomaly : {-3.0, -0.01, 0.5, 2.0}) {
                        const KeplerOrbit orbit{kAu, e, inclination, node, pericentre, anomaly};
                        ThreeVector r;
                        ThreeVector v;
                        orbit.GetState(kMu, &r, &v);
                        const KeplerOrbit again = ElementsOf(r, v);
                        EXPECT_NEAR(again.semiMajorAxis / kAu, 1.0, 1e-11);
                        EXPECT_NEAR(again.eccentricity, e, 1e-11);
                        EXPECT_NEAR(again.inclination, inclination, 1e-11);
                        EXPECT_NEAR(again.ascendingNode, node, 1e-11);
                        EXPECT_NEAR(again.pericentreArgument, pericentre, 1e-10);
                        EXPECT_NEAR(again.meanAnomaly, anomaly, 1e-10);
                    }
}

TEST(KeplerOrbit, KeplersEquationHoldsForNeedleThinEllipses) {
    KeplerOrbit orbit;
    for (const double e : {0.0, 0.5, 0.999999, std::nextafter(1.0, 0.0)})
        for (const double m : {0.0, 1e-12, 0.003, 1.0, 3.14159, -2.0, 40.0}) {
            orbit.eccentricity = e;
            orbit.meanAnomaly = m;
            const double anomaly = orbit.EccentricAnomaly();
            const double reduced = std::remainder(m, 2.0 * kPi);
            EXPECT_NEAR(anomaly - e * std::sin(anomaly), reduced, 4e-16 * (1.0 + std::abs(m)))
                << "e = " << e << ", M = " << m;
        }
}

}  // namespace
