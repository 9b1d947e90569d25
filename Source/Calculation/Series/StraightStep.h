// The way of bodies that nothing pulls, as a single step: they all go straight on. Lives as long as
// who wants to know of it.
#pragma once

#include "Calculation/BodyArrays.h"
#include "Calculation/Series/SeriesStep.h"
#include "Calculation/Series/SeriesStore.h"

class StraightStep {
public:
    // From where the bodies stand at `time`, s.
    StraightStep(const BodyRows& bodies, double time, double until);
    StraightStep(const StraightStep&) = delete;
    StraightStep& operator=(const StraightStep&) = delete;

    // Goes no farther than that, in scales.
    void EndAt(double theta) { step_.Set(step_.Begin(), theta, 1); }
    [[nodiscard]] const SeriesStep& Step() const { return step_; }

private:
    SeriesStore store_;
    SeriesStep step_{store_};
};
