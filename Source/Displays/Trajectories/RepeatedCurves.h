// Remembers which curves were painted, to about a pixel: a body that goes round and round repeats
// itself, and that is recognised here before anything is computed. Forgets some, since it is
// small. A plain value.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <vector>

#include "Displays/Trajectories/TrajectoryMap.h"
#include "Platform/Support/SupportDefs.h"

class RepeatedCurves {
public:
    // For a trail of so many curves.
    explicit RepeatedCurves(std::size_t curves)
        : keys_(std::bit_floor(std::clamp<std::size_t>(curves, 1, kMaxKeys))) {}

    // Whether a curve with this start, middle and end was asked for before.
    bool Knows(PlaneMap::Point start, PlaneMap::Point middle, PlaneMap::Point end) {
        uint64 key = 0;
        for (const PlaneMap::Point& point : {start, middle, end})
            key = Mix(key ^ CellOf(point.x) ^ CellOf(point.y) << kHalfBits);
        uint64& place = keys_[(key >> kHalfBits) & (keys_.size() - 1)];
        if (place == key) return true;
        place = key;
        return false;
    }

private:
    static constexpr std::size_t kMaxKeys = 8192;
    static constexpr int32 kHalfBits = 32;

    // The nearest even number, as the bits of a sum so large that no others are left of it: a line
    // reaches from one to the next.
    static uint64 CellOf(double x) {
        constexpr double kEven = 0x1.8p53;
        return std::bit_cast<uint64>(x + kEven);
    }
    static uint64 Mix(uint64 bits) {
        bits *= 0x9e3779b97f4a7c15u;
        return bits ^ bits >> 29;
    }

    std::vector<uint64> keys_;
};
