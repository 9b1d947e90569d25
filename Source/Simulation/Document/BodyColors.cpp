#include "Simulation/Document/BodyColors.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kGoldenSection = 0.6180339887498949;
constexpr double kFirstHue = 0.48;  // turns; the sequence starts with the template's blue-green
// Colours nearer than this are easily taken for one another.
constexpr double kClearDistance = 120.0;
constexpr int32 kRound = 24;

uint8 Channel(double value) {
    return static_cast<uint8>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
}

// Hue in turns, saturation and value 0 ... 1.
rgb_color FromHsv(double hue, double saturation, double value) {
    const auto component = [=](double offset) {
        const double k = std::fmod(offset + hue * 6.0, 6.0);
        return value - value * saturation * std::clamp(std::min(k, 4.0 - k), 0.0, 1.0);
    };
    return {Channel(component(5.0)), Channel(component(3.0)), Channel(component(1.0)), 255};
}

}  // namespace

rgb_color BodyColors::At(int64 index) {
    const double turns = kFirstHue + kGoldenSection * static_cast<double>(index);
    // Pure blue is dark on the sky: no colour is fully saturated, and every third is paler.
    const double saturation = index % 3 == 2 ? 0.5 : 0.8;
    return FromHsv(turns - std::floor(turns), saturation, 1.0);
}

rgb_color BodyColors::Next(int32 index, const std::vector<rgb_color>& inUse) {
    for (int32 i = 0; i < kRound; i++) {
        const rgb_color color = At(int64{index} + i);
        if (std::ranges::all_of(
                inUse, [=](rgb_color used) { return Distance(color, used) >= kClearDistance; }))
            return color;
    }
    return At(index);
}

double BodyColors::Distance(rgb_color a, rgb_color b) {
    const double red = a.red - b.red, green = a.green - b.green, blue = a.blue - b.blue;
    const double meanRed = (a.red + b.red) / 2.0;
    return std::sqrt((2.0 + meanRed / 256.0) * red * red + 4.0 * green * green +
                     (2.0 + (255.0 - meanRed) / 256.0) * blue * blue);
}
