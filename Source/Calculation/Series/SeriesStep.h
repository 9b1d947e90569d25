// The last step of a SeriesStepper: its series is the motion itself, so that places, velocities
// and accelerations are known at any time within it. Lives as long as the stepper and changes with
// its next step.
#pragma once

#include "Calculation/Series/SeriesStore.h"
#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"

// A time as the sum of two numbers, s.
struct SplitTime {
    double high = 0.0;
    double low = 0.0;
};

class SeriesStep {
public:
    struct BodyMotion {
        ThreeVector position;      // m
        ThreeVector velocity;      // m/s
        ThreeVector acceleration;  // m/s2
    };

    explicit SeriesStep(const SeriesStore& store) : store_(store) {}
    // `theta`: the length in units of the series' scale, positive.
    void Set(const SplitTime& begin, double theta, int32 parts);

    [[nodiscard]] const SplitTime& Begin() const { return begin_; }
    // Both in s, negative when time runs backwards.
    [[nodiscard]] double Length() const { return theta_ * Scale(); }
    [[nodiscard]] double Scale() const { return store_.Arrays().scale; }
    [[nodiscard]] double Theta() const { return theta_; }
    [[nodiscard]] SplitTime End() const;

    // The step is to be reported in so many equal parts, 1 to 32: no path bends by more than 6
    // degrees from one report to the next, as far as 32 reports can have it so.
    [[nodiscard]] int32 Parts() const { return parts_; }
    // The end of the part 1 ... Parts(), in scales.
    [[nodiscard]] double ThetaOf(int32 part) const;
    // The time there, s.
    [[nodiscard]] double TimeAt(double theta) const;
    // Of any time, s.
    [[nodiscard]] double ThetaAt(double time) const;

    [[nodiscard]] const SeriesStore& Store() const { return store_; }
    // At `theta` scales from the step's start.
    [[nodiscard]] BodyMotion BodyAt(int32 body, double theta) const;

private:
    const SeriesStore& store_;
    SplitTime begin_;
    double theta_ = 0.0;
    int32 parts_ = 1;
};

// Where something becomes true on the way from one place in a step, where it is not, to a later one
// where it is: to the last place.
template <class Holds>
double FirstTheta(double before, double after, const Holds& holds) {
    for (;;) {
        const double middle = before + (after - before) / 2;
        if (!(middle > before && middle < after)) return after;
        (holds(middle) ? after : before) = middle;
    }
}

// The number of parts for the greatest squared tangent by which a path bends in a quarter of a
// step.
int32 PartsForBend(double squaredTangent);
