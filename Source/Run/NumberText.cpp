#include "Run/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

constexpr double kMaxWait = 1e9;  // s; beyond it the number says nothing

template <typename... Format>
std::string ToText(double value, Format... format) {
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, format...);
    return {digits, end.ptr};
}

}  // namespace

std::string RoundedText(double value, int digits) {
    return ToText(value, std::chars_format::general, digits);
}

std::string ExactText(double value) {
    return ToText(value);
}

std::string ClockText(double seconds) {
    if (!(seconds > 0.0)) seconds = 0.0;
    const auto whole = std::int64_t{std::llround(std::min(seconds, kMaxWait))};
    const auto twoDigits = [](std::int64_t n) { return (n < 10 ? ":0" : ":") + std::to_string(n); };
    const std::int64_t hours = whole / 3600;
    const std::int64_t minutes = whole / 60 % 60;
    const std::string head =
        hours > 0 ? std::to_string(hours) + twoDigits(minutes) : std::to_string(minutes);
    return head + twoDigits(whole % 60);
}

std::string RateText(double perSecond) {
    if (!std::isfinite(perSecond) || perSecond < 1000.0) return RoundedText(perSecond, 3);
    const double unit = std::pow(10.0, std::floor(std::log10(perSecond)) - 2.0);
    return ToText(std::round(perSecond / unit) * unit, std::chars_format::fixed, 0);
}
