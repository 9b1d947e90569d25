// Vectors of doubles for the kernels that are compiled once for each instruction set; only they
// include it. Everything here has internal linkage, so that no function compiled for a newer
// processor can stand in for its namesake in code that runs on all of them.
#pragma once

#include "Platform/Support/SupportDefs.h"

#define ORVEK_INLINE [[gnu::always_inline]] inline

namespace {

template <int32 kLanes>
struct VectorTypes;
template <>
struct VectorTypes<2> {
    using Real [[gnu::vector_size(16)]] = double;
    using Integer [[gnu::vector_size(16)]] = int64;
};
template <>
struct VectorTypes<4> {
    using Real [[gnu::vector_size(32)]] = double;
    using Integer [[gnu::vector_size(32)]] = int64;
};
template <>
struct VectorTypes<8> {
    using Real [[gnu::vector_size(64)]] = double;
    using Integer [[gnu::vector_size(64)]] = int64;
};

template <int32 kLanes>
struct Vector {
    using Real = typename VectorTypes<kLanes>::Real;
    using Integer = typename VectorTypes<kLanes>::Integer;

    ORVEK_INLINE static Real Load(const double* from) {
        Real value;
        __builtin_memcpy(&value, from, sizeof value);
        return value;
    }
    // The same where the numbers were written one by one a moment ago: a wide load would wait until
    // they are in the cache. Volatile, or the compiler makes a wide load of it.
    ORVEK_INLINE static Real LoadEach(const double* from) {
        if constexpr (kLanes > 2) return Load(from);
        const volatile double* const numbers = from;
        return Real{numbers[0], numbers[1]};
    }
    ORVEK_INLINE static void Store(double* to, Real value) {
        __builtin_memcpy(to, &value, sizeof value);
    }
    ORVEK_INLINE static Real Fill(double value) { return value + Real{}; }
    ORVEK_INLINE static Integer LaneNumbers() {
        Integer numbers;
        for (int32 lane = 0; lane < kLanes; lane++)
            numbers[lane] = lane;
        return numbers;
    }
    ORVEK_INLINE static Real Sqrt(Real value) {
        Real root;
        for (int32 lane = 0; lane < kLanes; lane++)
            root[lane] = __builtin_sqrt(value[lane]);
        return root;
    }
    ORVEK_INLINE static Real Max(Real a, Real b) { return b > a ? b : a; }
    ORVEK_INLINE static Real Size(Real value) { return value < 0 ? -value : value; }
    // Lane l gets what was in lane from[l].
    ORVEK_INLINE static Real Shuffle(Real value, Integer from) {
#ifdef __clang__
        Real shuffled;
        for (int32 lane = 0; lane < kLanes; lane++)
            shuffled[lane] = value[from[lane]];
        return shuffled;
#else
        return __builtin_shuffle(value, from);
#endif
    }
    // The same for two vectors in a row.
    ORVEK_INLINE static Real Shuffle(Real low, Real high, Integer from) {
#ifdef __clang__
        Real shuffled;
        for (int32 lane = 0; lane < kLanes; lane++)
            shuffled[lane] = from[lane] < kLanes ? low[from[lane]] : high[from[lane] - kLanes];
        return shuffled;
#else
        return __builtin_shuffle(low, high, from);
#endif
    }
};

// Three coordinates of a vector of bodies.
template <class Real>
struct Triple {
    Real x, y, z;

    ORVEK_INLINE Triple operator-(const Triple& b) const { return {x - b.x, y - b.y, z - b.z}; }
    ORVEK_INLINE Triple operator*(Real b) const { return {x * b, y * b, z * b}; }
    ORVEK_INLINE Triple operator+(const Triple& b) const { return {x + b.x, y + b.y, z + b.z}; }
    ORVEK_INLINE void operator+=(const Triple& b) { x += b.x, y += b.y, z += b.z; }
    ORVEK_INLINE void operator-=(const Triple& b) { x -= b.x, y -= b.y, z -= b.z; }
    ORVEK_INLINE Real Dot(const Triple& b) const { return x * b.x + y * b.y + z * b.z; }
};

}  // namespace
