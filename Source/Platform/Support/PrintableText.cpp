#include "Platform/Support/PrintableText.h"

#include <cstddef>

#include "Platform/Support/SupportDefs.h"

namespace {

// Of the controls at U+0080 to U+009F in UTF-8 this is the first byte; the second is the control.
constexpr uint8 kLeadOfControls = 0xC2;

// Bytes of the control character at the start of the text, 0 for another.
std::size_t ControlLength(std::string_view text) {
    const auto first = static_cast<uint8>(text[0]);
    if (first < 0x20 || first == 0x7F) return 1;
    if (first != kLeadOfControls || text.size() < 2) return 0;
    const auto second = static_cast<uint8>(text[1]);
    return second >= 0x80 && second < 0xA0 ? 2 : 0;
}

std::string WrittenOut(char control) {
    constexpr char kDigits[] = "0123456789abcdef";
    if (control == '\n') return "\\n";
    if (control == '\t') return "\\t";
    const auto byte = static_cast<uint8>(control);
    return {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
}

}  // namespace

std::string Printable(std::string_view text) {
    std::string printable;
    printable.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = ControlLength(text);
        if (length == 0)
            printable += text[0];
        else
            printable += WrittenOut(text[length - 1]);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return printable;
}
