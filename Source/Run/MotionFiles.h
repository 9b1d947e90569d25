// What a run writes of the motion itself, beside its reports: states at chosen times or where steps
// end, and events. Owned by the runner, and used on its thread while the calculator is parked.
#pragma once

#include <optional>

#include "Platform/Support/SupportDefs.h"
#include "Run/EventLog.h"
#include "Run/TimedStates.h"

class Calculator;
struct Options;

class MotionFiles {
public:
    // None is owned.
    MotionFiles(const Options& options, Calculator* calculator);

    // The text that tells why a run of that order cannot have what is asked for, if so.
    [[nodiscard]] std::optional<int32> Obstacle(int32 order, bool isBackwards) const;
    // 0, or the errno of what failed; so does Close. Changes nothing in a file that is there.
    [[nodiscard]] int Open();
    [[nodiscard]] int Close() { return events_.Close(); }
    // The file of reports has these states in place of reports, if any.
    [[nodiscard]] TimedStates* States(int32 order);
    [[nodiscard]] std::size_t MissedTimes() const { return states_.Missed(); }

private:
    const Options& options_;
    Calculator* const calculator_;
    TimedStates states_;
    EventLog events_;
};
