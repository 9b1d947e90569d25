#include "Model/Systems/OrbitalElements.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace {

using std::numbers::pi;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Goodyear's functions of a universal anomaly s (dt = r ds) and beta = mu / a:
// Gk = s^k (1/k! - beta s^2/(k+2)! + ...).
struct Universal {
    double g0, g1, g2, g3;
};

// Series where the closed forms would lose digits.
Universal UniversalFunctions(double beta, double s) {
    const double x = beta * s * s;
    if (std::fabs(x) < 1.0) {
        double c2 = 1.0;
        double c3 = 1.0;
        for (int k = 18; k > 0; k -= 2) {
            c2 = 1.0 - c2 * x / ((k + 1) * (k + 2));
            c3 = 1.0 - c3 * x / ((k + 2) * (k + 3));
        }
        const double g2 = 0.5 * c2 * s * s;
        const double g3 = c3 * s * s * s / 6.0;
        return {1.0 - beta * g2, s - beta * g3, g2, g3};
    }
    const double root = std::sqrt(std::fabs(beta));
    const double angle = root * s;
    const bool isBound = beta > 0.0;
    const double g0 = isBound ? std::cos(angle) : std::cosh(angle);
    const double g1 = (isBound ? std::sin(angle) : std::sinh(angle)) / root;
    const double half = isBound ? std::sin(0.5 * angle) : std::sinh(0.5 * angle);
    return {g0, g1, 2.0 * half * half / std::fabs(beta), (s - g1) / beta};
}

// mu / a.
double Beta(const OrbitalElements& orbit) {
    return orbit.gravitationalParameter * (1.0 - orbit.eccentricity) / orbit.periapsisDistance;
}

double PeriapsisSpeed(const OrbitalElements& orbit) {
    return std::sqrt(orbit.gravitationalParameter * (1.0 + orbit.eccentricity) /
                     orbit.periapsisDistance);
}

// The distance of the two, m.
double RadiusAt(const OrbitalElements& orbit, const Universal& g) {
    return orbit.periapsisDistance + orbit.gravitationalParameter * orbit.eccentricity * g.g2;
}

// Since periapsis, s.
double TimeAt(const OrbitalElements& orbit, double s) {
    const Universal g = UniversalFunctions(Beta(orbit), s);
    return orbit.periapsisDistance * s + orbit.gravitationalParameter * orbit.eccentricity * g.g3;
}

// 0 to 2 pi.
double Positive(double angle) {
    const double turned = std::remainder(angle, 2.0 * pi);
    return turned < 0.0 ? turned + 2.0 * pi : turned;
}

// Up to half a revolution the time is a convex function of the anomaly: from above, Newton's steps
// fall until only rounding is left.
double AnomalyAt(const OrbitalElements& orbit, double time) {
    constexpr int kMaxSteps = 200;
    if (time < 0.0) return -AnomalyAt(orbit, -time);
    const double beta = Beta(orbit);
    const double cubic = orbit.gravitationalParameter * orbit.eccentricity;
    double s = time / orbit.periapsisDistance;
    s = beta > 0.0 ? std::min(s, pi / std::sqrt(beta)) : std::min(s, std::cbrt(6.0 * time / cubic));
    for (int i = 0; i < kMaxSteps; i++) {
        const double next =
            s - (TimeAt(orbit, s) - time) / RadiusAt(orbit, UniversalFunctions(beta, s));
        if (!(next < s)) break;
        s = next;
    }
    return s;
}

double AnomalyOfAngle(const OrbitalElements& orbit, double trueAnomaly) {
    const double beta = Beta(orbit);
    const double half = std::tan(0.5 * trueAnomaly) / PeriapsisSpeed(orbit);
    const double root = std::sqrt(std::fabs(beta));
    if (root == 0.0) return 2.0 * half;
    return 2.0 * (beta > 0.0 ? std::atan(root * half) : std::atanh(root * half)) / root;
}

// Of an ellipse, the time within half a revolution of periapsis.
double Reduced(const OrbitalElements& orbit, double time) {
    const double period = orbit.Period();
    return std::isfinite(period) ? std::remainder(time, period) : time;
}

// Two directions in the orbit's plane: to the ascending node, and a right angle further on.
struct PlaneAxes {
    ThreeVector node;
    ThreeVector ahead;
};

PlaneAxes AxesOf(double node, double inclination) {
    const double cosine = std::cos(inclination);
    return {{std::cos(node), std::sin(node), 0.0},
            {-std::sin(node) * cosine, std::cos(node) * cosine, std::sin(inclination)}};
}

// In the orbit's plane, from the focus: x to periapsis.
struct PlaneState {
    double x, y, vx, vy;
};

PlaneState PlaneStateOf(const OrbitalElements& orbit) {
    const double s = AnomalyAt(orbit, Reduced(orbit, orbit.timeSincePeriapsis));
    const Universal g = UniversalFunctions(Beta(orbit), s);
    const double mu = orbit.gravitationalParameter;
    const double radius = RadiusAt(orbit, g);
    const double sweep = orbit.periapsisDistance * PeriapsisSpeed(orbit);  // angular momentum
    return {orbit.periapsisDistance - mu * g.g2, sweep * g.g1, -mu * g.g1 / radius,
            sweep * g.g0 / radius};
}

}  // namespace

double OrbitalElements::SemiMajorAxis() const {
    return periapsisDistance / (1.0 - eccentricity);
}

double OrbitalElements::Period() const {
    return eccentricity < 1.0 ? 2.0 * pi / MeanMotion() : kInfinity;
}

double OrbitalElements::MeanMotion() const {
    const double size =
        eccentricity == 1.0 ? std::cbrt(2.0) * periapsisDistance : std::fabs(SemiMajorAxis());
    return std::sqrt(gravitationalParameter / size) / size;
}

double OrbitalElements::TrueAnomaly() const {
    const PlaneState state = PlaneStateOf(*this);
    return std::atan2(state.y, state.x);
}

double OrbitalElements::Value(OrbitalElement element) const {
    switch (element) {
        case OrbitalElement::kSemiMajorAxis:
            return SemiMajorAxis();
        case OrbitalElement::kPeriapsisDistance:
            return periapsisDistance;
        case OrbitalElement::kEccentricity:
            return eccentricity;
        case OrbitalElement::kInclination:
            return inclination;
        case OrbitalElement::kNode:
            return node;
        case OrbitalElement::kArgumentOfPeriapsis:
            return argumentOfPeriapsis;
        case OrbitalElement::kMeanAnomaly:
            return MeanAnomaly();
        case OrbitalElement::kTrueAnomaly:
            return TrueAnomaly();
        case OrbitalElement::kTimeSincePeriapsis:
            return timeSincePeriapsis;
    }
    return 0.0;
}

OrbitalElements ElementsOf(const RelativeState& state, double gravitationalParameter) {
    const ThreeVector momentum = Cross(state.position, state.velocity);
    const double level = std::hypot(momentum.x, momentum.y);
    const double sweep = std::hypot(level, momentum.z);
    const double radius = std::hypot(state.position.x, state.position.y, state.position.z);
    const double parameter = sweep * (sweep / gravitationalParameter);
    // The eccentricity times cosine and sine of the true anomaly.
    const double along = parameter / radius - 1.0;
    const double across =
        Dot(state.position, state.velocity) / radius * (sweep / gravitationalParameter);

    OrbitalElements orbit;
    orbit.gravitationalParameter = gravitationalParameter;
    orbit.eccentricity = std::hypot(along, across);
    orbit.periapsisDistance = parameter / (1.0 + orbit.eccentricity);
    orbit.inclination = std::atan2(level, momentum.z);
    if (level > 0.0) orbit.node = Positive(std::atan2(momentum.x, -momentum.y));
    const PlaneAxes axes = AxesOf(orbit.node, orbit.inclination);
    const double latitude =
        std::atan2(Dot(state.position, axes.ahead), Dot(state.position, axes.node));
    // What a small eccentricity leaves uncertain in the one angle is made good by the other.
    const double anomaly = orbit.eccentricity > 0.0 ? std::atan2(across, along) : latitude;
    orbit.argumentOfPeriapsis = Positive(latitude - anomaly);
    orbit.timeSincePeriapsis = TimeAt(orbit, AnomalyOfAngle(orbit, anomaly));
    return orbit;
}

RelativeState StateOf(const OrbitalElements& elements) {
    const PlaneState plane = PlaneStateOf(elements);
    const PlaneAxes axes = AxesOf(elements.node, elements.inclination);
    const double cosine = std::cos(elements.argumentOfPeriapsis);
    const double sine = std::sin(elements.argumentOfPeriapsis);
    const ThreeVector toPeriapsis = axes.node * cosine + axes.ahead * sine;
    const ThreeVector ahead = axes.ahead * cosine - axes.node * sine;
    return {toPeriapsis * plane.x + ahead * plane.y, toPeriapsis * plane.vx + ahead * plane.vy};
}

bool SetElement(OrbitalElement element, double value, OrbitalElements* elements) {
    OrbitalElements changed = *elements;
    const double axis = elements->SemiMajorAxis();
    const double meanAnomaly = elements->MeanAnomaly();
    const bool wasEllipse = elements->eccentricity < 1.0;
    switch (element) {
        case OrbitalElement::kSemiMajorAxis:
            changed.periapsisDistance = value * (1.0 - elements->eccentricity);
            break;
        case OrbitalElement::kPeriapsisDistance:
            changed.periapsisDistance = value;
            break;
        case OrbitalElement::kEccentricity:
            if (value < 0.0) return false;
            changed.eccentricity = value;
            if (wasEllipse && value < 1.0) changed.periapsisDistance = axis * (1.0 - value);
            break;
        case OrbitalElement::kInclination:
            if (value < 0.0 || value > pi) return false;
            changed.inclination = value;
            break;
        case OrbitalElement::kNode:
            changed.node = Positive(value);
            break;
        case OrbitalElement::kArgumentOfPeriapsis:
            changed.argumentOfPeriapsis = Positive(value);
            break;
        case OrbitalElement::kMeanAnomaly:
            changed.timeSincePeriapsis = value / elements->MeanMotion();
            break;
        case OrbitalElement::kTrueAnomaly:
            changed.timeSincePeriapsis =
                TimeAt(changed, AnomalyOfAngle(changed, std::remainder(value, 2.0 * pi)));
            break;
        case OrbitalElement::kTimeSincePeriapsis:
            changed.timeSincePeriapsis = value;
            break;
    }
    const bool setsShape = element == OrbitalElement::kSemiMajorAxis ||
                           element == OrbitalElement::kPeriapsisDistance ||
                           element == OrbitalElement::kEccentricity;
    if (setsShape && wasEllipse && changed.eccentricity < 1.0)
        changed.timeSincePeriapsis = meanAnomaly / changed.MeanMotion();
    if (!(changed.periapsisDistance > 0.0) || !std::isfinite(changed.periapsisDistance) ||
        !std::isfinite(changed.eccentricity) || !std::isfinite(changed.timeSincePeriapsis) ||
        !std::isfinite(changed.node + changed.argumentOfPeriapsis + changed.inclination))
        return false;
    *elements = changed;
    return true;
}
