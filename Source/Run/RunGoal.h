// Where a run ends. A plain value.
#pragma once

#include <optional>
#include <string>

#include "Platform/Support/SupportDefs.h"

class AbEpoch;
class Calculator;
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
    // The run that is about to start there ends here, and goes this way.
    void SetIn(Calculator* calculator, double startTime) const;
};

// What the options say of the epoch that a run is to be in. With the portal's write lock.
void ApplySettings(const Options& options, AbEpoch* epoch);
