#include "Run/RunGoal.h"

#include <algorithm>

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
