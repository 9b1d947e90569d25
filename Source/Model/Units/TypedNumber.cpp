#include "Model/Units/TypedNumber.h"

#include <charconv>
#include <cmath>
#include <string>

namespace {

constexpr std::size_t kGroup = 3;
// The plain one, those that are not broken at the end of a line, and the thin one.
constexpr std::string_view kSpaces[] = {" ", "\u00a0", "\u202f", "\u2009"};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsSign(char c) {
    return c == '+' || c == '-';
}

// How many bytes a space at the text's beginning has; 0 for none.
std::size_t SpaceLength(std::string_view text) {
    for (const std::string_view space : kSpaces)
        if (text.starts_with(space)) return space.size();
    return 0;
}

std::string_view WithoutSpaces(std::string_view text) {
    while (const std::size_t space = SpaceLength(text))
        text.remove_prefix(space);
    return text;
}

class NumberReader {
public:
    explicit NumberReader(std::string_view text) : rest_(WithoutSpaces(text)) {}

    std::optional<double> Read() {
        if (!rest_.empty() && IsSign(rest_[0])) Move(rest_[0] == '-' ? "-" : "");
        const bool isWhole = TakeGroups(false);
        bool isFraction = false;
        if (rest_.starts_with('.') || rest_.starts_with(',')) {
            Move(".");
            isFraction = TakeGroups(true);
        }
        if (!isWhole && !isFraction) return std::nullopt;
        TakeExponent();
        return GoesOn() ? std::nullopt : Value();
    }
    [[nodiscard]] std::string_view Rest() const { return WithoutSpaces(rest_); }

private:
    // One byte of the text, written as the standard library reads it.
    void Move(std::string_view written) {
        plain_ += written;
        rest_.remove_prefix(1);
    }

    std::size_t TakeDigits() {
        std::size_t count = 0;
        for (; !rest_.empty() && IsDigit(rest_[0]); count++)
            Move(rest_.substr(0, 1));
        return count;
    }

    // False for no digit at all. The first group of a whole number may be short, as the last one of
    // a fraction may be.
    bool TakeGroups(bool isFraction) {
        std::size_t count = TakeDigits();
        const bool isAny = count > 0;
        bool isGroup = isFraction ? count == kGroup : isAny && count <= kGroup;
        while (isGroup && IsGroupNext(isFraction)) {
            rest_.remove_prefix(SpaceLength(rest_));
            count = TakeDigits();
            isGroup = count == kGroup;
        }
        return isAny;
    }

    [[nodiscard]] bool IsGroupNext(bool mayBeShort) const {
        const std::size_t space = SpaceLength(rest_);
        std::size_t count = 0;
        while (space > 0 && space + count < rest_.size() && IsDigit(rest_[space + count]))
            count++;
        return count == kGroup || (mayBeShort && count > 0 && count < kGroup);
    }

    void TakeExponent() {
        const std::size_t sign = rest_.size() > 1 && IsSign(rest_[1]) ? 1 : 0;
        if (rest_.size() < 2 + sign || (rest_[0] != 'e' && rest_[0] != 'E') ||
            !IsDigit(rest_[1 + sign]))
            return;
        Move("e");
        if (sign > 0) Move(rest_.substr(0, 1));
        TakeDigits();
    }

    // Whether another number follows.
    [[nodiscard]] bool GoesOn() const {
        const std::string_view next = Rest();
        return !next.empty() &&
               (IsDigit(next[0]) || IsSign(next[0]) || next[0] == '.' || next[0] == ',');
    }

    [[nodiscard]] std::optional<double> Value() const {
        double value = 0.0;
        const char* const end = plain_.data() + plain_.size();
        const auto result = std::from_chars(plain_.data(), end, value);
        if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value))
            return std::nullopt;
        return value;
    }

    std::string_view rest_;
    std::string plain_;
};

}  // namespace

std::optional<double> TakeTypedNumber(std::string_view* text) {
    NumberReader reader(*text);
    const std::optional<double> number = reader.Read();
    if (number) *text = reader.Rest();
    return number;
}
