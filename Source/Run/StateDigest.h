// A digest by which two states of a simulation can be compared to the bit. No state, any thread.
#pragma once

#include <string>

struct SystemState;

// The SHA-256 digest, in hexadecimal digits, of the state as little-endian 64-bit words: the time,
// then for each body its identifier, x, y, z, vx, vy, vz.
[[nodiscard]] std::string DigestOf(const SystemState& state);
