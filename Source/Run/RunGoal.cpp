#include "Run/RunGoal.h"

#include <algorithm>
#include <limits>

#include "Calculation/Calculator.h"
#include "Model/Epochs/AbEpoch.h"
#include "Run/Options.h"
#include "Simulation/Document/RunTarget.h"

RunGoal RunGoal::Of(const Options& options, double startTime, const RunTarget& target) {
    RunGoal goal;
    goal.steps = options.steps;
    if (options.duration) goal.time = startTime + *options.duration;
    goal.until = options.until;
    if (target.IsTime()) goal.time = std::min(goal.time.value_or(target.time), target.time);
    if (!goal.steps && !goal.time && !goal.until && !options.at.empty()) {
        const auto [first, last] = std::minmax_element(options.at.begin(), options.at.end());
        goal.time = *last > startTime ? *last : *first;
    }
    if (!goal.steps && !goal.time && !goal.until) goal.steps = Options::kDefaultSteps;
    return goal;
}

void RunGoal::SetIn(Calculator* calculator, double startTime) const {
    calculator->SetBackwards(IsBefore(startTime));
    calculator->SetRunLimit(steps.value_or(0),
                            time.value_or(std::numeric_limits<double>::infinity()));
}

void ApplySettings(const Options& options, AbEpoch* epoch) {
    if (options.cutoff) epoch->SetCutoff(*options.cutoff);
    if (options.order) epoch->SetOrder(*options.order);
    if (options.onCollision) epoch->SetOnContact(*options.onCollision);
}
