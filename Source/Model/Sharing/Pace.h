// How fast the user wants to see time pass: so many seconds of the simulation in a second; Auto, at
// which the shortest orbit takes about four seconds; or as fast as the machine can. Results do not
// depend on it. A plain value.
#pragma once

class Pace {
public:
    // What can be chosen, in seconds of the simulation per second.
    static constexpr double kMin = 1.0;
    static constexpr double kMax = 1e15;

    // As fast as possible.
    constexpr Pace() = default;
    // Brought within the limits.
    [[nodiscard]] static Pace Of(double secondsPerSecond);
    [[nodiscard]] static constexpr Pace Auto() { return Pace(kAuto); }
    // Of a number that IsNumber accepts.
    [[nodiscard]] static constexpr Pace From(double number) { return Pace(number); }
    [[nodiscard]] static bool IsNumber(double number);

    // As documents hold it: seconds per second, 0 for as fast as possible, -1 for Auto.
    [[nodiscard]] constexpr double Number() const { return number_; }
    [[nodiscard]] constexpr bool IsUnlimited() const { return number_ == 0.0; }
    [[nodiscard]] constexpr bool IsAuto() const { return number_ == kAuto; }

    bool operator==(const Pace&) const = default;

private:
    static constexpr double kAuto = -1.0;

    constexpr explicit Pace(double number) : number_(number) {}

    double number_ = 0.0;
};
