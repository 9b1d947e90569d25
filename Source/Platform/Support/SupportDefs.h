// Fixed-width names, status values and small helpers that every floor uses. No state, any thread.
#pragma once

#include <cstdint>

using int8 = std::int8_t;
using uint8 = std::uint8_t;
using int16 = std::int16_t;
using uint16 = std::uint16_t;
using int32 = std::int32_t;
using uint32 = std::uint32_t;
using int64 = std::int64_t;
using uint64 = std::uint64_t;

// Negative: failure (Errors.h); 0 or more: success.
using status_t = int32;
using type_code = uint32;
// Microseconds.
using bigtime_t = int64;

// FourCC("ARCV") is the number whose most significant byte is 'A'.
consteval uint32 FourCC(const char (&text)[5]) {
    uint32 code = 0;
    for (int i = 0; i < 4; i++)
        code = code << 8 | static_cast<uint8>(text[i]);
    return code;
}
