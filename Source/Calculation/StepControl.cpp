#include "Calculation/StepControl.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kInverseStepAtStart = 100.0;
// 10^(1/8) and its inverse.
constexpr double kShrink = 1.33352143216;
constexpr double kGrow = 0.749894209334325;
constexpr double kPromotionExponent = 0.6666666666666666;
constexpr double kPromotionFactor = 4.281;

double Square(double value) {
    return value * value;
}

// Truncates toward zero. A tiny cutoff at order 2 leaves the range of an int32: then never promote.
int32 ToInterval(double steps) {
    constexpr int32 kMax = std::numeric_limits<int32>::max();
    return steps < kMax ? static_cast<int32>(steps) : kMax;
}

StepPowers PowersOf(double h) {
    StepPowers powers;
    powers.h = h;
    powers.h2 = h * 0.5 * h;
    powers.h3 = powers.h2 * 0.3333333333333333 * h;
    powers.h4 = powers.h3 * 0.25 * h;
    return powers;
}

}  // namespace

void StepControl::Restart(double cutoff, int32 order) {
    inverse_ = kInverseStepAtStart;
    inverseSquared_ = Square(inverse_);
    powers_ = PowersOf(0.01);

    const double factor = std::pow(cutoff, -1.0 / (order - 1));
    lowThreshold_ = Square(factor * kGrow);
    highThreshold_ = Square(factor * kShrink);
    promotionInterval_ = ToInterval(std::pow(factor, kPromotionExponent) * kPromotionFactor);
}

void StepControl::Resume(double inverse) {
    inverse_ = inverse;
    inverseSquared_ = Square(inverse);
    powers_ = PowersOf(1.0 / inverse);
}

void StepControl::Adapt(double rate) {
    // Both loops end whatever the rate is: s^2 reaches any bound, infinity included, by
    // overflowing; the upper bound is never 0, because a rate is at least 1e-100; and NaN enters
    // neither loop.
    const double low = lowThreshold_ * rate;
    const double high = highThreshold_ * rate;
    const double former = inverse_;
    if (low > inverseSquared_) {
        while (inverseSquared_ < low) {
            inverse_ *= kShrink;
            inverseSquared_ = Square(inverse_);
        }
    } else if (high < inverseSquared_) {
        while (inverseSquared_ > high) {
            inverse_ *= kGrow;
            inverseSquared_ = Square(inverse_);
        }
    }
    if (inverse_ != former) powers_ = PowersOf(1.0 / inverse_);
}
