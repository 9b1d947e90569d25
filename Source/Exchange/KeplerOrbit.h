// The elements of an elliptic orbit, as almanacs give them, and the place on it that they describe.
// A plain value. Source of the formulas: Murray and Dermott, "Solar System Dynamics", chapter 2.
#pragma once

#include "Model/Systems/ThreeVector.h"

struct KeplerOrbit {
    double semiMajorAxis = 0.0;       // a, m
    double eccentricity = 0.0;        // e, 0 <= e < 1
    double inclination = 0.0;         // i, rad
    double ascendingNode = 0.0;       // longitude of the ascending node, rad
    double pericentreArgument = 0.0;  // angle from the node to the pericentre, rad
    double meanAnomaly = 0.0;         // M, rad

    // E with E - e sin E = M, in rad; -pi <= E <= pi.
    [[nodiscard]] double EccentricAnomaly() const;

    // Position (m) and velocity (m/s) relative to the centre. `mu` is GM of both bodies together,
    // m3/s2.
    void GetState(double mu, ThreeVector* position, ThreeVector* velocity) const;
};
