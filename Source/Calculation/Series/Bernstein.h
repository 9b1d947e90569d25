// A polynomial on a piece of the way from 0 to 1 by its Bernstein coefficients: it has no more
// roots there than they change signs. A plain value.
#pragma once

#include <array>
#include <vector>

#include "Calculation/Series/SeriesInstances.h"
#include "Platform/Support/SupportDefs.h"

struct Bernstein {
    // Of the square of a place.
    static constexpr int32 kMaxDegree = 2 * (kMaxSeriesOrder + 1);
    using Coefficients = std::array<double, kMaxDegree + 1>;

    // On the whole way; `powers` has the coefficients of the powers, from the lowest.
    Bernstein(int32 degreeOfIt, const Coefficients& powers);

    int32 degree;
    double begin = 0.0;
    double length = 1.0;
    Coefficients at{};

    [[nodiscard]] double End() const { return begin + length; }
    [[nodiscard]] int32 SignChanges() const;
    // Keeps the first half and returns the second.
    Bernstein Split();
};

// Appends, rising, where the whole way is to be cut so that the polynomial changes its sign at most
// once from one cut to the next.
void SeparateRoots(const Bernstein& whole, std::vector<double>* cuts);
