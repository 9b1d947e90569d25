// Where a body was at one moment of a run, and how it moved between two such moments. A plain value
// in SI units, in the document's frame.
#pragma once

#include "Model/Systems/ThreeVector.h"

struct Sample {
    double time = 0.0;     // s
    ThreeVector position;  // m
    ThreeVector velocity;  // m/s
    // The body came here from the sample before on a path that the two tell. Else something is
    // missing between them, or the body jumped: it became another, or was put elsewhere.
    bool isJoined = false;
};

// The moment `time` on the cubic (Hermite) that has the positions and velocities of both samples.
[[nodiscard]] Sample Between(const Sample& a, const Sample& b, double time);
