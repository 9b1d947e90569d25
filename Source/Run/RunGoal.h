// Where a run ends. A plain value.
#pragma once

#include <optional>
#include <string>

#include "Platform/Support/SupportDefs.h"

struct Options;
struct RunTarget;

// At least one of them is given.
struct RunGoal {
    std::optional<int64> steps;
    std::optional<double> time;        // s, the epoch's time at which to stop
    std::optional<std::string> until;  // UntilText.h

    // Of a run that starts there, with the target that "until" stands for. Without another limit it
    // goes to the last of the times at which a state is to be written.
    [[nodiscard]] static RunGoal Of(const Options& options, double startTime,
                                    const RunTarget& target);
    [[nodiscard]] bool IsBefore(double startTime) const { return time && *time < startTime; }
};
