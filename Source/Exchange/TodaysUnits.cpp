#include "Exchange/TodaysUnits.h"

#include <utility>

#include "Simulation/Document/ProgramResources.h"

std::optional<double> TodaysUnits::Length(std::string_view unit) const {
    const std::optional<double> factor = resources_.DistanceUnits().FactorOf(unit);
    const std::optional<double> formerUnit = resources_.DistanceUnits().FactorOf("AU");
    return factor && factor == formerUnit ? kAstronomicalUnit : factor;
}

std::optional<double> TodaysUnits::Speed(std::string_view unit) const {
    const std::optional<double> factor = resources_.SpeedUnits().FactorOf(unit);
    const std::optional<double> formerUnit = resources_.SpeedUnits().FactorOf("AU/dy");
    return factor && factor == formerUnit ? kAstronomicalUnit / kDay : factor;
}

std::optional<double> TodaysUnits::GM(std::string_view unit) {
    constexpr double kCube = kAstronomicalUnit * kAstronomicalUnit * kAstronomicalUnit;
    constexpr std::pair<std::string_view, double> kUnits[] = {{"m3/s2", 1.0},
                                                              {"m^3/s^2", 1.0},
                                                              {"km3/s2", 1e9},
                                                              {"km^3/s^2", 1e9},
                                                              {"au3/d2", kCube / (kDay * kDay)},
                                                              {"au^3/d^2", kCube / (kDay * kDay)}};
    for (const auto& [name, factor] : kUnits)
        if (name == unit) return factor;
    return std::nullopt;
}
