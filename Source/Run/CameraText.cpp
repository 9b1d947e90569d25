#include "Run/CameraText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double kMaxAzimuth = 360.0;  // degrees, as the next one
constexpr double kMaxElevation = 90.0;

}  // namespace

std::optional<CameraChoice> ParseCamera(std::string_view text) {
    std::vector<double> numbers;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t length = std::min(text.find(',', begin), text.size());
        const char* const end = text.data() + length;
        double& number = numbers.emplace_back();
        const auto read = std::from_chars(text.data() + begin, end, number);
        if (read.ec != std::errc() || read.ptr != end || !std::isfinite(number))
            return std::nullopt;
        begin = length + 1;
    }
    if (numbers.size() < 2 || numbers.size() > 3 || std::abs(numbers[0]) > kMaxAzimuth ||
        std::abs(numbers[1]) > kMaxElevation)
        return std::nullopt;
    CameraChoice camera;
    camera.azimuth = kDegree * numbers[0];
    camera.elevation = kDegree * numbers[1];
    if (numbers.size() == 2) return camera;
    camera.distance = numbers[2];
    return *camera.distance > 0.0 ? std::optional(camera) : std::nullopt;
}
