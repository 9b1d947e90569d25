// How an integrator and those who look into it see the bodies of a run: by index, in mass order, as
// structure of arrays. Plain views and values; the arrays are the integrator's.
#pragma once

#include "Platform/Support/SupportDefs.h"

// The bodies' coordinates: one array per axis (x, y, z). Metres and metres per second.
struct BodyArrays {
    const double* position[3];
    const double* velocity[3];
};

// All that an integrator knows of the bodies, the first `massive` of which have mass. GM in
// m3/s2, radii in metres.
struct BodyRows {
    int32 bodies = 0;
    int32 massive = 0;
    double* position[3] = {};
    double* velocity[3] = {};
    double* gm = nullptr;
    double* radius = nullptr;

    [[nodiscard]] BodyArrays Coordinates() const {
        return {{position[0], position[1], position[2]}, {velocity[0], velocity[1], velocity[2]}};
    }
};

// Indices of two bodies that touch, the later (lighter) one first.
struct CollidingPair {
    int32 later;
    int32 earlier;
    bool operator==(const CollidingPair&) const = default;
};
