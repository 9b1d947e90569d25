#include "Simulation/History/TimeLine.h"

#include <algorithm>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Simulation/History/RunHistory.h"

namespace {

// More lie too close together to be told apart.
constexpr std::size_t kMaxMergers = 1000;

void AddMarks(const TimeLine::Run& run, const RunHistory& history,
              std::vector<TimeLine::Mark>* marks) {
    using Kind = TimeLine::Mark::Kind;
    marks->push_back({Kind::kEpoch, run.start, run.epoch->Name(), {}});
    for (const RunEvent& event : history.Events(run.epoch)) {
        if (marks->size() >= kMaxMergers) return;
        if (event.kind == RunEvent::Kind::kMerger && event.before.size() == 2)
            marks->push_back(
                {Kind::kMerger, event.time, event.before[0].name, event.before[1].name});
    }
}

}  // namespace

const TimeLine::Run* TimeLine::RunAt(double time) const {
    const auto later = std::upper_bound(runs.begin(), runs.end(), time,
                                        [](double t, const Run& run) { return t < run.start; });
    if (later == runs.begin()) return nullptr;
    const Run& run = *(later - 1);
    return time <= run.end ? &run : nullptr;
}

// An epoch of which no run is kept, as one that was edited, has the run before it on the line. Time
// that was set back ends the line: it would go over the same moments twice.
TimeLine ReadRuns(const EpochPortal& portal, const RunHistory& history) {
    TimeLine line;
    line.now = portal.FocusEpoch()->Time();
    double before = line.now;
    for (const AbEpoch* epoch = portal.FocusEpoch(); epoch != nullptr; epoch = epoch->Parent()) {
        const auto span = history.SpanOf(epoch);
        if (!span) continue;
        // A run that goes on is known up to its last batch.
        const bool isFirst = line.runs.empty() && epoch == portal.FocusEpoch();
        if ((!isFirst && span->end > before) || span->start > span->end) break;
        line.runs.push_back({epoch, span->start, span->end});
        before = span->start;
    }
    std::reverse(line.runs.begin(), line.runs.end());
    return line;
}

TimeLine ReadTimeLine(const EpochPortal& portal, const RunHistory& history) {
    TimeLine line = ReadRuns(portal, history);
    for (const TimeLine::Run& run : line.runs)
        AddMarks(run, history, &line.marks);
    return line;
}
