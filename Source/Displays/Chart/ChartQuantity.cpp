#include "Displays/Chart/ChartQuantity.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

double ElementOf(Quantity quantity, const OrbitalElements& elements) {
    switch (quantity) {
        case Quantity::kSemiMajorAxis:
            return elements.SemiMajorAxis();
        case Quantity::kPeriapsisDistance:
            return elements.periapsisDistance;
        case Quantity::kEccentricity:
            return elements.eccentricity;
        case Quantity::kInclination:
            return elements.inclination;
        case Quantity::kNode:
            return elements.node;
        case Quantity::kArgumentOfPeriapsis:
            return elements.argumentOfPeriapsis;
        case Quantity::kTrueAnomaly:
            return elements.TrueAnomaly();
        default:
            return elements.Period();
    }
}

}  // namespace

Dimension DimensionOf(Quantity quantity) {
    switch (quantity) {
        case Quantity::kDistance:
        case Quantity::kX:
        case Quantity::kY:
        case Quantity::kZ:
        case Quantity::kSemiMajorAxis:
        case Quantity::kPeriapsisDistance:
            return Dimension::kLength;
        case Quantity::kSpeed:
        case Quantity::kVx:
        case Quantity::kVy:
        case Quantity::kVz:
            return Dimension::kSpeed;
        case Quantity::kInclination:
        case Quantity::kNode:
        case Quantity::kArgumentOfPeriapsis:
        case Quantity::kTrueAnomaly:
            return Dimension::kAngle;
        case Quantity::kPeriod:
            return Dimension::kTime;
        default:
            return Dimension::kNumber;
    }
}

double ValueOf(Quantity quantity, const RelativeState& state, double gravitationalParameter) {
    const auto& [r, v] = state;
    switch (quantity) {
        case Quantity::kDistance:
            return Length(r);
        case Quantity::kSpeed:
            return Length(v);
        case Quantity::kX:
            return r.x;
        case Quantity::kY:
            return r.y;
        case Quantity::kZ:
            return r.z;
        case Quantity::kVx:
            return v.x;
        case Quantity::kVy:
            return v.y;
        case Quantity::kVz:
            return v.z;
        default:
            break;
    }
    if (!(gravitationalParameter > 0.0) || Length(Cross(r, v)) == 0.0) return kNone;
    const double value = ElementOf(quantity, ElementsOf(state, gravitationalParameter));
    return std::isfinite(value) ? value : kNone;
}

double SlopeOf(Quantity quantity, const RelativeState& state) {
    const auto& [r, v] = state;
    switch (quantity) {
        case Quantity::kX:
            return v.x;
        case Quantity::kY:
            return v.y;
        case Quantity::kZ:
            return v.z;
        case Quantity::kDistance:
            return Length(r) > 0.0 ? Dot(r, v) / Length(r) : kNone;
        default:
            return kNone;
    }
}
