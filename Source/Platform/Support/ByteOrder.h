// Numbers in stored bytes: reading and writing them at any alignment, in either byte order, and
// turning the items of record fields round. Pure functions, any thread.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "Platform/Support/SupportDefs.h"

inline constexpr bool kHostIsBigEndian = std::endian::native == std::endian::big;

template <typename T>
requires std::is_arithmetic_v<T> T LoadNumber(const std::byte* from, bool swapped) {
    std::array<std::byte, sizeof(T)> bytes;
    std::memcpy(bytes.data(), from, sizeof(T));
    if (swapped) std::reverse(bytes.begin(), bytes.end());
    return std::bit_cast<T>(bytes);
}

template <typename T>
requires std::is_arithmetic_v<T>
void StoreNumber(std::byte* to, T value, bool swapped) {
    auto bytes = std::bit_cast<std::array<std::byte, sizeof(T)>>(value);
    if (swapped) std::reverse(bytes.begin(), bytes.end());
    std::memcpy(to, bytes.data(), sizeof(T));
}

// True if items of this type hold numbers, whose bytes depend on the byte order.
[[nodiscard]] bool HasByteOrder(type_code type);

// Turns the numbers of one item round, in place. An item whose size does not suit its type is left
// as it is.
void SwapItem(type_code type, std::byte* item, std::size_t size);
