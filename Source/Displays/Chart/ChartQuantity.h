// What a chart can show of a body, relative to another one, or of a whole simulation. Plain values;
// any thread.
#pragma once

#include <cstddef>

#include "Model/Systems/OrbitalElements.h"
#include "Platform/Support/SupportDefs.h"

// Documents have the numbers.
enum class Quantity : int32 {
    kDistance,
    kSpeed,
    kX,
    kY,
    kZ,
    kVx,
    kVy,
    kVz,
    kSemiMajorAxis,
    kPeriapsisDistance,
    kEccentricity,
    kInclination,
    kNode,
    kArgumentOfPeriapsis,
    kTrueAnomaly,
    kPeriod,
    kEnergyError,
    kMomentumError,
    kAngularMomentumError,
    kBodies,
};
inline constexpr int32 kCountQuantities = 20;

enum class Dimension { kTime, kLength, kSpeed, kAngle, kNumber };

[[nodiscard]] Dimension DimensionOf(Quantity quantity);
// Else of the whole simulation.
[[nodiscard]] inline bool IsOfBody(Quantity quantity) {
    return quantity < Quantity::kEnergyError;
}
// Its rate of change follows from the state alone.
[[nodiscard]] inline bool HasSlope(Quantity quantity) {
    return quantity == Quantity::kDistance ||
           (quantity >= Quantity::kX && quantity <= Quantity::kZ);
}

// Of a body's, in SI units; `gravitationalParameter`: of both bodies together, m3/s2. Not a number
// where there is none.
[[nodiscard]] double ValueOf(Quantity quantity, const RelativeState& state,
                             double gravitationalParameter);
// Per second.
[[nodiscard]] double SlopeOf(Quantity quantity, const RelativeState& state);
