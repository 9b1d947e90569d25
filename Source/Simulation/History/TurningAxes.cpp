#include "Simulation/History/TurningAxes.h"

#include <cmath>

namespace {

bool Normalize(ThreeVector* vector) {
    // The largest first, so that no square is lost.
    const double most =
        std::fmax(std::fabs(vector->x), std::fmax(std::fabs(vector->y), std::fabs(vector->z)));
    if (!(most > 0.0) || !std::isfinite(most)) return false;
    *vector *= 1.0 / most;
    *vector *= 1.0 / std::sqrt(Dot(*vector, *vector));
    return true;
}

}  // namespace

TurningAxes TurningAxes::Of(const ThreeVector& way, const ThreeVector& axis) {
    TurningAxes axes;
    axes.along = axis;
    if (!Normalize(&axes.along)) axes.along = {0.0, 0.0, 1.0};
    axes.across = way - Dot(way, axes.along) * axes.along;
    const bool isSteep = std::fabs(axes.along.x) > 0.5;
    const ThreeVector other = isSteep ? ThreeVector{0.0, 1.0, 0.0} : ThreeVector{1.0, 0.0, 0.0};
    if (!Normalize(&axes.across)) {
        axes.across = other - Dot(other, axes.along) * axes.along;
        Normalize(&axes.across);
    }
    axes.up = Cross(axes.along, axes.across);
    return axes;
}

ThreeVector TurningAxes::See(const ThreeVector& vector) const {
    return {Dot(vector, across), Dot(vector, up), Dot(vector, along)};
}
