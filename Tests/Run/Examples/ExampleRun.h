// Runs an example with the real program, and has the states of its bodies at chosen times.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Model/Systems/OrbitalElements.h"

namespace examples {

constexpr double kSunGM = 1.32712440041279e20;  // m3/s2
constexpr double kAU = 1.4959787066e11;         // m
constexpr double kDay = 86400.0;                // s
constexpr double kYear = 31556925.2;
constexpr double kDegree = 0.017453292519943295;  // rad

struct Moment {
    double time = 0.0;  // s
    std::map<std::string, RelativeState> bodies;

    // Of the second body as seen from the first.
    [[nodiscard]] RelativeState Between(const std::string& first, const std::string& second) const;
    [[nodiscard]] OrbitalElements Orbit(const std::string& centre, const std::string& body,
                                        double gravitationalParameter) const;
    // Of the body as seen from the centre, from x to y, in degrees.
    [[nodiscard]] double Longitude(const std::string& centre, const std::string& body) const;
    // Half of all bodies are nearer to the origin, m.
    [[nodiscard]] double MedianDistance() const;
};

// At so many times from 0 to `end`, at equal distances, s.
[[nodiscard]] std::vector<double> Times(double end, int count);
// Empty, and a failure, if the program could not.
[[nodiscard]] std::vector<Moment> RunExample(const std::string& example,
                                             const std::vector<double>& times);

// The difference of two angles in degrees, -180 to 180.
[[nodiscard]] double Turned(double from, double to);

}  // namespace examples
