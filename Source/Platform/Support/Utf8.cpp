#include "Platform/Support/Utf8.h"

#include "Platform/Support/SupportDefs.h"

namespace {

uint8 Byte(char c) {
    return static_cast<uint8>(c);
}

}  // namespace

std::size_t Utf8Length(std::string_view text) {
    const uint8 first = Byte(text[0]);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; i++)
        if ((Byte(text[i]) & 0xC0) != 0x80) return 0;
    // Overlong forms, surrogates, and what lies beyond Unicode.
    const uint8 second = Byte(text[1]);
    const bool bad = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                     (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return bad ? 0 : length;
}
