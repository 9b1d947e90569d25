// The constants of the stored forms of a record, shared by its reader and its writer.
#pragma once

#include <cstddef>
#include <span>

#include "Platform/Support/SupportDefs.h"

// The form that is written. A header, the fields, one byte 0; nothing is aligned. The magic tells
// the byte order of every number in the record.
namespace StoredRecord {

inline constexpr uint32 kMagic = FourCC("FOB1");
inline constexpr std::size_t kChecksumOffset = 4;
inline constexpr std::size_t kSizeOffset = 8;  // the checksum covers the header from here on
inline constexpr std::size_t kWhatOffset = 12;
inline constexpr std::size_t kFlagsOffset = 16;
inline constexpr std::size_t kHeaderSize = 17;
inline constexpr std::size_t kMinSize = kHeaderSize + 1;

inline constexpr uint8 kHeaderValid = 0x01;
inline constexpr uint8 kTargetIncluded = 0x02;
inline constexpr uint8 kReplyIncluded = 0x04;
inline constexpr std::size_t kTargetSize = 4;
inline constexpr std::size_t kReplySize = 16;

inline constexpr uint8 kFieldValid = 0x01;
inline constexpr uint8 kMiniData = 0x02;  // count and data size are one byte each
inline constexpr uint8 kFixedSize = 0x04;
inline constexpr uint8 kSingleItem = 0x08;  // the count is left out
inline constexpr std::size_t kMiniLimit = 255;

// What a variable-size item of `size` bytes occupies: its size word, itself, and padding.
constexpr uint64 PaddedItemSize(uint64 size) {
    return (4 + size + 7) & ~uint64{7};
}

// The sum of the bytes as big-endian numbers, whatever the record's byte order. `covered` always is
// 4n + 1 bytes long.
inline uint32 Checksum(std::span<const std::byte> covered) {
    uint32 sum = 0;
    std::size_t at = 0;
    for (; at + 4 <= covered.size(); at += 4) {
        uint32 word = 0;
        for (std::size_t i = 0; i < 4; i++)
            word = word << 8 | std::to_integer<uint32>(covered[at + i]);
        sum += word;
    }
    return sum + std::to_integer<uint32>(covered[at]);
}

}  // namespace StoredRecord

// The other form that is read: a header, a table of field headers, a block of names and items.
// Always little-endian. It also has a hash table, which reading in order does not need.
namespace TabularRecord {

inline constexpr uint32 kMagic = FourCC("1FMH");
inline constexpr std::size_t kWhatOffset = 4;
inline constexpr std::size_t kFlagsOffset = 8;
inline constexpr std::size_t kDataSizeOffset = 36;
inline constexpr std::size_t kFieldCountOffset = 40;
inline constexpr std::size_t kHeaderSize = 68;
inline constexpr uint32 kHeaderValid = 0x0001;
inline constexpr uint32 kDataInSharedArea = 0x0080;

inline constexpr std::size_t kFieldHeaderSize = 24;
inline constexpr std::size_t kFieldNameLengthOffset = 2;  // counts the terminating 0
inline constexpr std::size_t kFieldTypeOffset = 4;
inline constexpr std::size_t kFieldItemCountOffset = 8;
inline constexpr std::size_t kFieldDataSizeOffset = 12;
inline constexpr std::size_t kFieldPositionOffset = 16;
inline constexpr uint16 kFieldValid = 0x0001;
inline constexpr uint16 kFixedSize = 0x0002;

}  // namespace TabularRecord
