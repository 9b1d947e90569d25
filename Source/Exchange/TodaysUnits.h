// The units of tables from elsewhere: those of the program, but for the astronomical unit, which
// there is the one of 2012; and GM in kilometres. No state; any thread.
#pragma once

#include <optional>
#include <string_view>

class ProgramResources;

class TodaysUnits {
public:
    static constexpr double kAstronomicalUnit = 149'597'870'700.0;  // m
    static constexpr double kDay = 86'400.0;                        // s

    explicit TodaysUnits(const ProgramResources& resources) : resources_(resources) {}

    // In SI units; nothing if there is no such unit.
    [[nodiscard]] std::optional<double> Length(std::string_view unit) const;
    [[nodiscard]] std::optional<double> Speed(std::string_view unit) const;
    [[nodiscard]] static std::optional<double> GM(std::string_view unit);

private:
    const ProgramResources& resources_;
};
