// What a run writes of the motion itself, beside its reports: states at chosen times or where steps
// end, and events. Owned by the runner, and used on its thread while the calculator is parked.
#pragma once

#include <optional>

#include "Platform/Support/SupportDefs.h"
#include "Resources/Runner.h"
#include "Run/EventLog.h"
#include "Run/TimedStates.h"

class Calculator;
class ReportFile;
struct Options;

class MotionFiles {
public:
    // None is owned.
    MotionFiles(const Options& options, Calculator* calculator);

    // The text that tells why a run of that order cannot have what is asked for, if so.
    [[nodiscard]] std::optional<int32> Obstacle(int32 order, bool isBackwards) const;
    // 0, or the errno of what failed; so does Close. Of a run that is resumed the record counts.
    // Changes nothing in a file that is there unless it is all that is asked for.
    [[nodiscard]] int Open(const RunRecord& run);
    // After Open: why the file that is there cannot be gone on with, if so.
    [[nodiscard]] std::optional<RunnerText> FileObstacle() const { return fileObstacle_; }
    [[nodiscard]] int Close() { return events_.Close(); }
    // The file of reports has these states in place of reports, if any.
    [[nodiscard]] TimedStates* States(const ReportFile& file, int32 order, bool isBackwards);
    // How far the file of events has come, if there is one that could be gone on with.
    [[nodiscard]] std::optional<EventMark> Mark() { return events_.Mark(); }
    [[nodiscard]] std::size_t MissedTimes() const { return states_.Missed(); }

private:
    const Options& options_;
    Calculator* const calculator_;
    TimedStates states_;
    EventLog events_;
    std::optional<RunnerText> fileObstacle_;
};
