// Random numbers that are the same bits on every machine for the same seed: SplitMix64 (Steele, Lea
// and Flood, 2014). Owned by the caller.
#pragma once

#include <cstdint>

#include "Model/Systems/ThreeVector.h"

class SeededRandom {
public:
    explicit SeededRandom(std::uint64_t seed) : state_(seed) {}

    // 0 <= x < 1, a multiple of 2^-53.
    double Uniform() {
        state_ += 0x9e3779b97f4a7c15;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        z ^= z >> 31;
        return static_cast<double>(z >> 11) * 0x1p-53;
    }

    // A point of the unit ball, all places alike.
    ThreeVector InBall() {
        for (;;) {
            const double x = 2.0 * Uniform() - 1.0;
            const double y = 2.0 * Uniform() - 1.0;
            const double z = 2.0 * Uniform() - 1.0;
            if (x * x + y * y + z * z < 1.0) return {x, y, z};
        }
    }

private:
    std::uint64_t state_;
};
