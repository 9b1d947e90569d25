#include "Run/MotionFiles.h"

#include "Calculation/Calculator.h"
#include "Model/Epochs/EpochLimits.h"
#include "Resources/DocumentTexts.h"
#include "Resources/Runner.h"
#include "Run/Options.h"

MotionFiles::MotionFiles(const Options& options, Calculator* calculator)
    : options_(options), calculator_(calculator) {}

std::optional<int32> MotionFiles::Obstacle(int32 order, bool isBackwards) const {
    if (order > kMaxLowOrder) return std::nullopt;
    if (!options_.at.empty()) return kTextAtNeedsSeries;
    if (options_.events) return kTextEventsNeedSeries;
    if (isBackwards) return kTextNoWayBack;
    return std::nullopt;
}

int MotionFiles::Open() {
    if (!options_.events) return 0;
    const int error = events_.Open(*options_.events);
    events_.SetEscapeDistance(options_.escapeDistance);
    if (error == 0) calculator_->AddWatcher(&events_);
    return error;
}

TimedStates* MotionFiles::States(int32 order) {
    // Each report of a low order is a step.
    const bool areSteps = options_.stepTimes && order > kMaxLowOrder;
    if (!options_.csv || (options_.at.empty() && !areSteps)) return nullptr;
    if (areSteps)
        states_.WantSteps(options_.every.value_or(1));
    else
        states_.WantTimes(options_.at);
    calculator_->AddWatcher(&states_);
    return &states_;
}
