#include "Displays/Hands/MeasuredPair.h"

#include <cmath>

MeasuredValues MeasureBetween(const BodyMotion& from, const BodyMotion& to,
                              const std::optional<BodyMotion>& third) {
    MeasuredValues values{Length(to.position - from.position), Length(to.velocity - from.velocity),
                          std::nullopt};
    if (!third) return values;
    const ThreeVector a = from.position - third->position;
    const ThreeVector b = to.position - third->position;
    // Small angles, too, are as exact as the places.
    const double across = Length(Cross(a, b));
    const double along = Dot(a, b);
    if (Length(a) > 0.0 && Length(b) > 0.0 && std::isfinite(across + along))
        values.angle = std::atan2(across, along);
    return values;
}
