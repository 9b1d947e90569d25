#include "Displays/Chart/ChartAxis.h"

#include <algorithm>
#include <cmath>

#include "Model/Units/QuantityText.h"

namespace {

constexpr double kMargin = 0.04;  // of the way between the ends
// Of the larger end: numbers have so many digits, and some for the ticks between.
constexpr double kShortest = 1e-12;
constexpr double kLargest = 1e200;
constexpr double kDecade = 1.0;
constexpr int kMaxDigits = 15;
constexpr double kFarAway = 1e6;  // pixels
constexpr std::size_t kMaxTicks = 100;
// Of a step: an end that is a tick itself has it.
constexpr double kRounding = 1e-6;

int DigitsFor(double low, double high, double step) {
    const double largest = std::max(std::abs(low), std::abs(high));
    const double digits = std::floor(std::log10(largest)) - std::floor(std::log10(step)) + 1.0;
    return static_cast<int>(std::clamp(digits, 1.0, static_cast<double>(kMaxDigits)));
}

}  // namespace

double RoundStep(double least) {
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= least) return factor * power;
    return 10.0 * power;
}

ChartRange RangeAround(double low, double high, bool isLog) {
    if (!(low <= high)) return isLog ? ChartRange{1.0, 10.0} : ChartRange{};
    if (isLog) {
        const double room = std::pow(high / low, kMargin);
        return high / low < 2.0 ? ChartRange{low / 2.0, high * 2.0}
                                : ChartRange{low / room, high * room};
    }
    const double length = high - low;
    const double size = std::max(std::abs(low), std::abs(high));
    // A value that only rounding moves is shown as one that rests.
    const double room = length > kShortest * 10.0 * size ? kMargin * length
                        : size > 0.0                     ? size / 2.0
                                                         : 1.0;
    return {low - room, high + room};
}

ChartAxis::ChartAxis(const ChartRange& range, double unit, bool isLog, float from, float to)
    : range_(range), unit_(unit), isLog_(isLog), from_(from), to_(to) {
    low_ = Scaled(range.low);
    high_ = Scaled(range.high);
}

double ChartAxis::Scaled(double value) const {
    return isLog_ ? std::log10(value) : value;
}

double ChartAxis::Unscaled(double scaled) const {
    return isLog_ ? std::pow(10.0, scaled) : scaled;
}

double ChartAxis::FinePlaceOf(double value) const {
    const double part = (Scaled(value) - low_) / (high_ - low_);
    return static_cast<double>(from_) + part * static_cast<double>(to_ - from_);
}

float ChartAxis::PlaceOf(double value) const {
    return static_cast<float>(std::clamp(FinePlaceOf(value), -kFarAway, kFarAway));
}

double ChartAxis::ValueAt(float place) const {
    const double part = static_cast<double>(place - from_) / static_cast<double>(to_ - from_);
    return Unscaled(low_ + part * (high_ - low_));
}

std::vector<ChartAxis::Tick> ChartAxis::Ticks(float spacing) const {
    const double length = std::max(1.0, static_cast<double>(std::abs(to_ - from_)));
    const double least = (high_ - low_) * static_cast<double>(spacing) / length;
    if (!(least > 0.0) || !std::isfinite(least)) return {};
    if (isLog_ && high_ - low_ >= kDecade)
        return Decades(static_cast<int>(std::max(1.0, std::ceil(least))));
    const double low = range_.low / unit_;
    const double high = range_.high / unit_;
    const double step = RoundStep((high - low) * static_cast<double>(spacing) / length);
    const int digits = DigitsFor(low, high, step);
    std::vector<Tick> ticks;
    const double last = std::floor(high / step + kRounding);
    for (double i = std::ceil(low / step - kRounding); i <= last && ticks.size() < kMaxTicks;
         i += 1.0)
        ticks.push_back({i * step * unit_, print_double(i * step, digits)});
    return ticks;
}

std::vector<ChartAxis::Tick> ChartAxis::Decades(int step) const {
    const double shift = std::log10(unit_);
    std::vector<Tick> ticks;
    for (double decade = std::ceil((low_ - shift) / step) * step;
         decade + shift <= high_ && ticks.size() < kMaxTicks; decade += step) {
        const double value = std::pow(10.0, decade);
        ticks.push_back({value * unit_, print_double(value, 1)});
    }
    return ticks;
}

ChartRange ChartAxis::RangeOf(double low, double high) const {
    const ChartRange range{Unscaled(low), Unscaled(high)};
    const double size = std::max(std::abs(low), std::abs(high));
    const bool isFine = high - low > kShortest * size && std::abs(range.low) < kLargest &&
                        std::abs(range.high) < kLargest && (!isLog_ || range.low > 1.0 / kLargest);
    return isFine ? range : range_;
}

ChartRange ChartAxis::Moved(float pixels) const {
    const double way =
        static_cast<double>(pixels) / static_cast<double>(to_ - from_) * (high_ - low_);
    return RangeOf(low_ + way, high_ + way);
}

ChartRange ChartAxis::Zoomed(float about, double factor) const {
    if (factor == 1.0) return range_;
    const double part = static_cast<double>(about - from_) / static_cast<double>(to_ - from_);
    const double fixed = low_ + part * (high_ - low_);
    return RangeOf(fixed - (fixed - low_) / factor, fixed + (high_ - fixed) / factor);
}
