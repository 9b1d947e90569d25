// The step length of the Taylor integrator: about cutoff^(1/(order - 1)) over the square root of
// the fastest pair's rate, changed only in factors of 10^(1/8) and only when it leaves a band of
// one such factor on either side. A plain value of the integrator, used on the calculation thread.
#pragma once

#include "Platform/Support/SupportDefs.h"

// The coefficients of the series for a step of h seconds.
struct StepPowers {
    double h;   // h, s
    double h2;  // h^2 / 2
    double h3;  // h^3 / 6
    double h4;  // h^4 / 24
};

class StepControl {
public:
    // Starts a run: the step goes back to 0.01 s, from which the first steps move it to its size.
    // `cutoff`: the relative size of a correction that may be ignored; `order`: 2 ... 4.
    void Restart(double cutoff, int32 order);

    // Goes on with a step of 1 / `inverse` seconds, after Restart.
    void Resume(double inverse);

    // Adapts the step to `rate`, the largest squared inverse time scale of any pair (1/s^2).
    void Adapt(double rate);

    // 1/s.
    [[nodiscard]] double Inverse() const { return inverse_; }
    [[nodiscard]] const StepPowers& Powers() const { return powers_; }
    // Steps between two promotions of the parts.
    [[nodiscard]] int32 PromotionInterval() const { return promotionInterval_; }

private:
    double inverse_ = 0.0;         // s = 1/h, 1/s
    double inverseSquared_ = 0.0;  // s^2
    double lowThreshold_ = 0.0;
    double highThreshold_ = 0.0;
    int32 promotionInterval_ = 0;
    StepPowers powers_{};
};
