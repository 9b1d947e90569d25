#include "Platform/Support/ByteOrder.h"

#include "Platform/Support/TypeConstants.h"

namespace {

void SwapWords(std::byte* bytes, std::size_t size, std::size_t wordSize) {
    if (size % wordSize != 0) return;
    for (std::size_t at = 0; at < size; at += wordSize)
        std::reverse(bytes + at, bytes + at + wordSize);
}

// 0: the type's items are not simply words of one width.
std::size_t WordSize(type_code type, std::size_t itemSize) {
    switch (type) {
        case B_INT16_TYPE:
        case B_UINT16_TYPE:
            return 2;
        case B_INT32_TYPE:
        case B_UINT32_TYPE:
        case B_FLOAT_TYPE:
        case B_TIME_TYPE:
        case B_POINT_TYPE:
        case B_RECT_TYPE:
            return 4;
        case B_INT64_TYPE:
        case B_UINT64_TYPE:
        case B_DOUBLE_TYPE:
        case B_OFF_T_TYPE:
            return 8;
        case B_SIZE_T_TYPE:
        case B_SSIZE_T_TYPE:
        case B_POINTER_TYPE:
            return itemSize == 4 || itemSize == 8 ? itemSize : 0;
        default:
            return 0;
    }
}

}  // namespace

bool HasByteOrder(type_code type) {
    return type == B_MESSENGER_TYPE || type == B_REF_TYPE || WordSize(type, 8) != 0;
}

void SwapItem(type_code type, std::byte* item, std::size_t size) {
    // Port, handler token and team; the rest is reserved.
    constexpr std::size_t kMessengerNumbers = 12;
    // A 32-bit device and a 64-bit directory; then the name.
    constexpr std::size_t kRefNumbers = 12;
    if (type == B_MESSENGER_TYPE) {
        if (size >= kMessengerNumbers) SwapWords(item, kMessengerNumbers, 4);
    } else if (type == B_REF_TYPE) {
        if (size < kRefNumbers) return;
        SwapWords(item, 4, 4);
        SwapWords(item + 4, 8, 8);
    } else if (const std::size_t word = WordSize(type, size); word != 0) {
        SwapWords(item, size, word);
    }
}
