// How two stories of the same bodies differ: at moments of which both are known to the bit, from
// the beginning on. Distances are parts of a body's distance from the centre of mass, which counts
// as a thousandth of the system's size at least. A plain value.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Simulation/Document/SystemState.h"

class StoryDifference {
public:
    // Of the whole system's size: a pixel of a picture that is a thousand pixels wide.
    static constexpr double kPixel = 2e-3;
    static constexpr double kPercent = 1e-2;

    // The same moment of both; `radii` (m) of the first one's bodies, in its order.
    void Add(const SystemState& story, const std::vector<double>& radii, const SystemState& other);

    [[nodiscard]] std::size_t CountMoments() const { return moments_; }
    [[nodiscard]] double Largest() const { return largest_; }
    // s: the first of the moments at which they differ by more than that; none: never.
    [[nodiscard]] std::optional<double> PixelFrom() const { return pixelFrom_; }
    [[nodiscard]] std::optional<double> PercentFrom() const { return percentFrom_; }
    [[nodiscard]] std::optional<double> RadiusFrom() const { return radiusFrom_; }
    // One has bodies that the other does not have; what comes later is not compared.
    [[nodiscard]] std::optional<double> BodiesFrom() const { return bodiesFrom_; }

private:
    std::size_t moments_ = 0;
    double largest_ = 0.0;
    std::optional<double> pixelFrom_;
    std::optional<double> percentFrom_;
    std::optional<double> radiusFrom_;
    std::optional<double> bodiesFrom_;
};
