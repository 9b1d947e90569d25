// The constants of a stored resource block, shared by its reader and its writer. A block is a
// header, an index of offsets and sizes, a part of filler, the data of all resources and a table
// that tells each resource's type, number and name. Offsets count from the start of the block.
#pragma once

#include <cstddef>
#include <span>

#include "Platform/Support/SupportDefs.h"

namespace ResourceFormat {

// A resource file is this and a little-endian block, or the other and a big-endian block.
inline constexpr uint8 kLittleEndianPrefix[4] = {'R', 'S', 0, 0};
inline constexpr uint8 kBigEndianPrefix[8] = {'J', 'o', 'y', '!', 'r', 'e', 's', 'f'};
inline constexpr std::size_t kBigEndianBlockOffset = 40;

inline constexpr uint32 kMagic = 0x444F1000;
inline constexpr std::size_t kCountOffset = 4;
inline constexpr std::size_t kIndexOffsetOffset = 8;
inline constexpr std::size_t kAdminSizeOffset = 12;
inline constexpr uint32 kMaxCount = 10000;

// The index section.
inline constexpr std::size_t kIndexOffset = 0x44;
inline constexpr std::size_t kIndexSizeOffset = 0x48;
inline constexpr std::size_t kFillerPartOffsetOffset = 0x50;
inline constexpr std::size_t kFillerPartSizeOffset = 0x54;
inline constexpr std::size_t kTableOffsetOffset = 0xBC;
inline constexpr std::size_t kTableSizeOffset = 0xC0;
inline constexpr std::size_t kEntriesOffset = 0xC8;
inline constexpr std::size_t kEntrySize = 12;
inline constexpr std::size_t kIndexGranularity = 1536;
inline constexpr std::size_t kFillerPartSize = 0x168;

// The table: a run of resources for each type, a separator after each run, the checksum, 0.
inline constexpr std::size_t kSeparatorSize = 8;
inline constexpr std::size_t kTableEndSize = 8;

// What an unused word at this offset (a multiple of 4) holds.
constexpr uint32 FillerAt(std::size_t offset) {
    constexpr uint32 kPattern[3] = {0xFFFFFFFF, 0x000003E9, 0x00000000};
    return kPattern[offset / 4 % 3];
}

// The sum of the table's bytes as big-endian words, whatever the block's byte order.
inline uint32 Checksum(std::span<const std::byte> table) {
    uint32 sum = 0;
    for (std::size_t at = 0; at < table.size(); at += 4) {
        uint32 word = 0;
        for (std::size_t i = at; i < table.size() && i < at + 4; i++)
            word = word << 8 | std::to_integer<uint32>(table[i]);
        sum += word;
    }
    return sum;
}

}  // namespace ResourceFormat
