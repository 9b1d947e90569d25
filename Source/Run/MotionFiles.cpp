#include "Run/MotionFiles.h"

#include "Calculation/Calculator.h"
#include "Model/Epochs/EpochLimits.h"
#include "Resources/DocumentTexts.h"
#include "Run/KeptRows.h"
#include "Run/Options.h"
#include "Run/ReportFile.h"

MotionFiles::MotionFiles(const Options& options, Calculator* calculator)
    : options_(options), calculator_(calculator) {}

std::optional<int32> MotionFiles::Obstacle(int32 order, bool isBackwards) const {
    if (order > kMaxLowOrder) return std::nullopt;
    if (!options_.at.empty()) return kTextAtNeedsSeries;
    if (options_.events) return kTextEventsNeedSeries;
    if (isBackwards) return kTextNoWayBack;
    return std::nullopt;
}

int MotionFiles::Open(const RunRecord& run) {
    if (!options_.events) return 0;
    if (const int error = events_.Open(*options_.events); error != 0) return error;
    calculator_->AddWatcher(&events_);
    const std::optional<EventMark>& former = run.eventFile;
    std::optional<double> distance = options_.escapeDistance;
    if (!distance && former) distance = former->escapeDistance;
    if (!options_.resume || events_.IsNew()) {
        events_.Begin(distance);
        return 0;
    }
    fileObstacle_ = kTextOtherEvents;
    if (!former) return 0;
    bool isThere = false;
    if (const int error = FindKeptRows(*options_.events, EventLog::kHeader, former->size,
                                       former->lastRow, &isThere);
        error != 0)
        return error;
    if (!isThere || distance != former->escapeDistance) return 0;
    fileObstacle_.reset();
    events_.GoOn(*former);
    return 0;
}

TimedStates* MotionFiles::States(const ReportFile& file, int32 order, bool isBackwards) {
    // Each report of a low order is a step.
    const bool areSteps = file.AreSteps() && order > kMaxLowOrder;
    if (!options_.csv || (file.Times().empty() && !areSteps)) return nullptr;
    if (areSteps)
        states_.WantSteps(file.Every());
    else
        states_.WantTimes(file.Times());
    states_.SetBackwards(isBackwards);
    calculator_->AddWatcher(&states_);
    return &states_;
}
