// The osculating orbit of one body about another: the conic section on which the two would go on if
// they were alone. Plain values, in SI units; any thread.
//
// The orbit's size is the distance of its periapsis and its place in time the time since that, so
// that circles, ellipses, parabolas, hyperbolas and lines through the centre need no cases of their
// own. Angles are in radians, the reference plane is x-y and the reference direction x. What is
// not determined is 0: the node of an orbit in the reference plane (then the argument of periapsis
// is the longitude of periapsis) and the argument of periapsis of a circle (then time counts from
// the node).
//
// Source of the formulas: the universal variables of Goodyear (1965) and Stumpff's functions, taken
// from periapsis.
#pragma once

#include "Model/Systems/ThreeVector.h"

enum class OrbitalElement {
    kSemiMajorAxis,
    kPeriapsisDistance,
    kEccentricity,
    kInclination,
    kNode,
    kArgumentOfPeriapsis,
    kMeanAnomaly,
    kTrueAnomaly,
    kTimeSincePeriapsis,
};

struct OrbitalElements {
    double periapsisDistance = 0.0;     // m
    double eccentricity = 0.0;          // 0 or more
    double inclination = 0.0;           // 0 to pi
    double node = 0.0;                  // longitude of the ascending node, 0 to 2 pi
    double argumentOfPeriapsis = 0.0;   // 0 to 2 pi
    double timeSincePeriapsis = 0.0;    // s; of an ellipse within half a revolution
    double gravitationalParameter = 0;  // m3/s2, of both bodies together

    // Positive of an ellipse, negative of a hyperbola, infinite of a parabola, m.
    [[nodiscard]] double SemiMajorAxis() const;
    // s; infinite if it never comes back.
    [[nodiscard]] double Period() const;
    // rad/s; of a parabola that of Barker's equation, sqrt(mu / (2 q^3)).
    [[nodiscard]] double MeanMotion() const;
    // -pi to pi.
    [[nodiscard]] double TrueAnomaly() const;
    // Mean motion times the time since periapsis, rad.
    [[nodiscard]] double MeanAnomaly() const { return MeanMotion() * timeSincePeriapsis; }
    // m, rad, s.
    [[nodiscard]] double Value(OrbitalElement element) const;
};

// Of the second body with regard to the first.
struct RelativeState {
    ThreeVector position;  // m
    ThreeVector velocity;  // m/s
};

// 1/m: positive where the two are bound; by the vis-viva equation, for a quick look.
[[nodiscard]] inline double InverseSemiMajorAxis(const RelativeState& state,
                                                 double gravitationalParameter) {
    return 2.0 / Length(state.position) -
           Dot(state.velocity, state.velocity) / gravitationalParameter;
}
// For a positive gravitational parameter, a position that is not the centre, and a velocity that
// does not lie along it: on such a line the elements are those of a very narrow orbit or not
// finite.
[[nodiscard]] OrbitalElements ElementsOf(const RelativeState& state, double gravitationalParameter);
// The time may be any number of revolutions after periapsis.
[[nodiscard]] RelativeState StateOf(const OrbitalElements& elements);

// Sets one element (m, rad, s). An ellipse that remains one keeps its semi-major axis, if that is
// not what is set, and its mean anomaly; else the periapsis distance and the time since periapsis
// stay. False, and nothing is changed, if there is no such orbit: of a negative distance, of a
// semi-major axis whose sign is not that of the orbit, or a true anomaly beyond a hyperbola's
// asymptote.
bool SetElement(OrbitalElement element, double value, OrbitalElements* elements);
