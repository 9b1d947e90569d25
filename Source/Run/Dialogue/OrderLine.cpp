#include "Run/Dialogue/OrderLine.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace {

// Takes what a JSON text consists of from its beginning.
class JsonCursor {
public:
    explicit JsonCursor(std::string_view text) : rest_(text) {}

    bool Take(char c) {
        SkipBlanks();
        if (!rest_.starts_with(c)) return false;
        rest_.remove_prefix(1);
        return true;
    }

    bool TakeString(std::string* text) {
        if (!Take('"')) return false;
        while (!rest_.empty() && rest_[0] != '"') {
            const char c = rest_[0];
            rest_.remove_prefix(1);
            if (static_cast<unsigned char>(c) < ' ') return false;
            if (c != '\\')
                *text += c;
            else if (!TakeEscape(text))
                return false;
        }
        return Take('"');
    }

    // As it is written.
    bool TakeNumber(std::string* text) {
        SkipBlanks();
        double number = 0.0;
        const auto read = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        if (read.ec != std::errc()) return false;
        *text = rest_.substr(0, static_cast<std::size_t>(read.ptr - rest_.data()));
        rest_.remove_prefix(text->size());
        return true;
    }

    bool AtEnd() {
        SkipBlanks();
        return rest_.empty();
    }

private:
    void SkipBlanks() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size()));
    }

    bool TakeEscape(std::string* text) {
        constexpr std::string_view kLetters = "\"\\/bfnrt";
        constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
        if (rest_.empty()) return false;
        const char letter = rest_[0];
        rest_.remove_prefix(1);
        if (const std::size_t i = kLetters.find(letter); i != std::string_view::npos) {
            *text += kMeanings[i];
            return true;
        }
        std::uint32_t code = 0;
        if (letter != 'u' || !TakeCode(&code)) return false;
        if (code >= 0xd800 && code < 0xdc00) {  // the first half of a pair
            std::uint32_t second = 0;
            if (!rest_.starts_with("\\u")) return false;
            rest_.remove_prefix(2);
            if (!TakeCode(&second) || second < 0xdc00 || second > 0xdfff) return false;
            code = 0x10000 + ((code - 0xd800) << 10) + (second - 0xdc00);
        } else if (code >= 0xdc00 && code <= 0xdfff) {
            return false;
        }
        AppendUtf8(text, code);
        return true;
    }

    // Four hexadecimal digits.
    bool TakeCode(std::uint32_t* code) {
        const std::string_view digits = rest_.substr(0, 4);
        const char* const end = digits.data() + digits.size();
        const auto read = std::from_chars(digits.data(), end, *code, 16);
        if (digits.size() < 4 || read.ec != std::errc() || read.ptr != end) return false;
        rest_.remove_prefix(4);
        return true;
    }

    static void AppendUtf8(std::string* text, std::uint32_t code) {
        if (code < 0x80) {
            *text += static_cast<char>(code);
            return;
        }
        const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        constexpr std::uint32_t kFirst[] = {0, 0xc0, 0xe0, 0xf0};
        *text += static_cast<char>(kFirst[more] | (code >> (6 * more)));
        for (int i = more - 1; i >= 0; i--)
            *text += static_cast<char>(0x80 | (code >> (6 * i) & 0x3f));
    }

    std::string_view rest_;
};

}  // namespace

std::optional<OrderLine> OrderLine::From(std::string_view line) {
    OrderLine order;
    JsonCursor cursor(line);
    const bool isOrder = cursor.Take('{') && cursor.TakeString(&order.name) && cursor.Take(':') &&
                         (cursor.TakeString(&order.value) || cursor.TakeNumber(&order.value)) &&
                         cursor.Take('}') && cursor.AtEnd();
    return isOrder ? std::optional(order) : std::nullopt;
}
