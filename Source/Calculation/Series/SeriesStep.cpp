#include "Calculation/Series/SeriesStep.h"

#include "Calculation/Series/SeriesSums.h"

namespace {

constexpr int32 kMaxParts = 32;

}  // namespace

void SeriesStep::Set(const SplitTime& begin, double theta, int32 parts) {
    begin_ = begin;
    theta_ = theta;
    parts_ = parts;
}

SplitTime SeriesStep::End() const {
    const auto [high, low] = AddSplit(begin_.high, begin_.low, Length());
    return {high, low};
}

double SeriesStep::ThetaOf(int32 part) const {
    return part == parts_ ? theta_ : theta_ * part / parts_;
}

double SeriesStep::TimeAt(double theta) const {
    return AddSplit(begin_.high, begin_.low, theta * Scale()).high;
}

double SeriesStep::ThetaAt(double time) const {
    return ((time - begin_.high) - begin_.low) / Scale();
}

SeriesStep::BodyMotion SeriesStep::BodyAt(int32 body, double theta) const {
    const SeriesArrays& arrays = store_.Arrays();
    const int32 slot = store_.SlotOf(body);
    const double* const rows = arrays.Vector(slot / kSlots) + slot % kSlots;
    const int32 last = arrays.order + 1;
    double numbers[3][3];
    for (int axis = 0; axis < 3; axis++) {
        const auto x = [&](int32 k) { return rows[(3 * k + axis) * kSlots]; };
        const double low[2] = {x(last + 1), x(last + 2)};
        const auto motion = SumSeries<double>(x, low, last, theta, arrays.scale);
        double acceleration = 0.0;
        for (int32 k = last; k >= 2; k--)
            acceleration = acceleration * theta + x(k) * static_cast<double>(k * (k - 1));
        numbers[0][axis] = motion.place.high;
        numbers[1][axis] = motion.velocity.high;
        numbers[2][axis] = acceleration / (arrays.scale * arrays.scale);
    }
    const auto triple = [&](int row) {
        return ThreeVector{numbers[row][0], numbers[row][1], numbers[row][2]};
    };
    return {triple(0), triple(1), triple(2)};
}

// A quarter that bends by 1.25 degrees is one part of five degrees, and so on: a margin for what a
// quarter's bend does not tell of its parts. The tangents of the multiples come from sums of
// angles, so that they depend on no library.
int32 PartsForBend(double squaredTangent) {
    constexpr double kTangent = 0.021820152;  // of 1.25 degrees
    double tangent = kTangent;
    int32 parts = 1;
    while (parts < kMaxParts && !(squaredTangent <= tangent * tangent)) {
        tangent = (tangent + kTangent) / (1.0 - tangent * kTangent);
        parts++;
    }
    return parts;
}
