// What the step's length is computed with: powers of two, and logarithms good to some six digits
// that are the same bits on every machine, which those of the system's library are not.
#pragma once

#include <bit>

#include "Platform/Support/SupportDefs.h"

inline double PowerOfTwo(int32 exponent) {
    return std::bit_cast<double>(static_cast<int64>(exponent + 1023) << 52);
}

// The least power of two above a positive number has this exponent.
inline int32 ExponentAbove(double number) {
    return static_cast<int32>((std::bit_cast<int64>(number) >> 52) & 2047) - 1022;
}

// Of a positive normal number.
inline double Log2(double number) {
    constexpr double kSqrt2 = 1.4142135623730951;
    constexpr int64 kFraction = 0xfffffffffffff;
    const int64 bits = std::bit_cast<int64>(number);
    auto exponent = static_cast<int32>((bits >> 52) & 2047) - 1023;
    auto mantissa = std::bit_cast<double>((bits & kFraction) | std::bit_cast<int64>(1.0));
    if (mantissa > kSqrt2) {
        mantissa *= 0.5;
        exponent++;
    }
    // ln((1 + z) / (1 - z)) = 2 (z + z^3 / 3 + ...), here over ln 2.
    const double z = (mantissa - 1) / (mantissa + 1);
    const double z2 = z * z;
    return exponent + z * (2.8853900818 + z2 * (0.9617966939 + z2 * (0.5770780164 + z2 * 0.4122)));
}

// -1000 < exponent < 1000.
inline double Exp2(double exponent) {
    auto whole = static_cast<int32>(exponent);
    if (whole > exponent) whole--;
    const double x = exponent - whole;
    const double power =
        1 + x * (0.6931471806 +
                 x * (0.2402265070 +
                      x * (0.0555041087 + x * (0.0096181291 + x * (0.0013333558 + x * 0.000154)))));
    return power * PowerOfTwo(whole);
}
