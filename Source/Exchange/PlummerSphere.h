// A star cluster in equilibrium, after Plummer (1911): its density is ~ (1 + r2/a2)^(-5/2). The
// same seed gives the same bits on every machine, because random numbers come from a generator of
// our own and only + - * / and the square root are used, which are rounded alike everywhere.
#pragma once

#include <cstdint>
#include <vector>

#include "Model/Systems/ThreeVector.h"

struct PlummerStar {
    ThreeVector position;  // m
    ThreeVector velocity;  // m/s
};

// `count` stars of equal mass around the origin. `totalMass` is GM of the whole (m3/s2), `length`
// is a (m). What lies beyond ten lengths (1.5 % of the mass) is left out. Method: Aarseth, Henon
// and Wielen (1974), with powers replaced by points drawn from a ball.
[[nodiscard]] std::vector<PlummerStar> PlummerSphere(int count, double totalMass, double length,
                                                     std::uint64_t seed);
