#include "Model/Units/QuantityText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

namespace {

// The number's decimal exponents that need no exponent in the text.
constexpr int kMinPlain = -5;
constexpr int kMaxPlain = 14;

constexpr std::size_t kGroup = 3;
constexpr const char* kNarrowSpace = "\u202f";

double Read(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// "12345" and 11: the number 1.2345e11 without an exponent.
std::string Plain(const std::string& digits, int exponent) {
    const int count = static_cast<int>(digits.size());
    const auto zeros = [](int number) {
        return std::string(static_cast<std::size_t>(number), '0');
    };
    if (exponent < 0) return "0." + zeros(-1 - exponent) + digits;
    if (exponent >= count - 1) return digits + zeros(exponent + 1 - count);
    const auto point = static_cast<std::size_t>(exponent) + 1;
    return digits.substr(0, point) + '.' + digits.substr(point);
}

std::string Scientific(const std::string& digits, int exponent) {
    const std::string fraction = digits.size() > 1 ? '.' + digits.substr(1) : "";
    return digits.substr(0, 1) + fraction + 'e' + std::to_string(exponent);
}

std::string PositiveText(double value, int digits) {
    char buffer[64];
    // "1.2345e+11"
    const char* const end = std::to_chars(buffer, buffer + sizeof buffer, value,
                                          std::chars_format::scientific, digits - 1)
                                .ptr;
    const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
    const std::size_t mark = text.find('e');
    std::string mantissa(text.substr(0, mark));
    std::erase(mantissa, '.');
    mantissa.erase(mantissa.find_last_not_of('0') + 1);
    const bool isBelowOne = text[mark + 1] == '-';
    int exponent = 0;
    std::from_chars(text.data() + mark + 2, end, exponent);
    if (isBelowOne) exponent = -exponent;

    if (exponent < kMinPlain || exponent > kMaxPlain) return Scientific(mantissa, exponent);
    std::string plain = Plain(mantissa, exponent);
    // Zeros at the end of a large number say that its digits are known.
    if (exponent >= digits && Read(plain) != value) return Scientific(mantissa, exponent);
    return plain;
}

}  // namespace

std::string print_double(double value, int digits) {
    if (std::isnan(value)) return {};
    if (std::isinf(value)) return value < 0.0 ? "-inf" : "inf";
    if (value == 0.0) return "0";
    const std::string text = PositiveText(std::fabs(value), digits);
    return value < 0.0 ? '-' + text : text;
}

std::string Grouped(std::string digits) {
    for (std::size_t end = std::min(digits.find_first_not_of("0123456789"), digits.size());
         end > kGroup; end -= kGroup)
        digits.insert(end - kGroup, kNarrowSpace);
    return digits;
}

std::string QuantityText(double value, double uval) {
    const double number = value / uval;
    constexpr int kEnough = std::numeric_limits<double>::max_digits10;
    if (std::isfinite(number))
        for (int digits = 1; digits < kEnough; digits++)
            if (std::string text = print_double(number, digits); Read(text) * uval == value)
                return text;
    return print_double(number, kEnough);
}
