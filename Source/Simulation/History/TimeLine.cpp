#include "Simulation/History/TimeLine.h"

#include <algorithm>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/RunRemake.h"

namespace {

// More lie too close together to be told apart.
constexpr std::size_t kMaxMarks = 1000;

void AddMarks(const TimeLine::Run& run, const RunHistory& history, TimeLine* line) {
    using Kind = TimeLine::Mark::Kind;
    if (line->marks.size() >= kMaxMarks) return;
    line->marks.push_back({Kind::kEpoch, run.start, run.epoch->Name(), {}});
    for (const RunEvent& event : history.Events(run.epoch)) {
        if (line->marks.size() >= kMaxMarks || line->IsBefore(run.end, event.time)) return;
        if (event.kind == RunEvent::Kind::kMerger && event.before.size() == 2)
            line->marks.push_back(
                {Kind::kMerger, event.time, event.before[0].name, event.before[1].name});
    }
}

// Those that no run has led to: logged, edited, or the beginning of a branch. Names that go on in
// the run that begins there are told once.
void AddEpochs(const EpochPortal& portal, TimeLine* line) {
    std::vector<TimeLine::Mark>& marks = line->marks;
    if (line->IsEmpty()) return;
    for (const AbEpoch* epoch = portal.FocusEpoch();
         epoch->Parent() != nullptr && marks.size() < kMaxMarks; epoch = epoch->Parent()) {
        const double time = epoch->Time();
        const std::string name = epoch->Name();
        const bool isRun =
            std::ranges::find(line->runs, epoch, &TimeLine::Run::epoch) != line->runs.end();
        if (isRun || line->IsBefore(time, line->Start()) || line->IsBefore(line->End(), time))
            continue;
        const auto after = std::ranges::find_if(
            marks, [&](const TimeLine::Mark& mark) { return line->IsBefore(time, mark.time); });
        const bool isTold = std::any_of(marks.begin(), after, [&](const TimeLine::Mark& mark) {
            return mark.time == time && mark.name == name;
        });
        if (!isTold) marks.insert(after, {TimeLine::Mark::Kind::kEpoch, time, name, {}});
    }
}

std::optional<TimeLine::Run> RunTo(const AbEpoch& epoch, const RunHistory& history) {
    if (const auto way = history.WayTo(epoch); way)
        return TimeLine::Run{way->run, way->start, way->end, true};
    if (!RunRemake::IsPossible(epoch)) return std::nullopt;
    return TimeLine::Run{&epoch, epoch.Parent()->Time(), epoch.Time(), false};
}

}  // namespace

const TimeLine::Run* TimeLine::RunAt(double time) const {
    const auto later =
        std::upper_bound(runs.begin(), runs.end(), time,
                         [this](double t, const Run& run) { return IsBefore(t, run.start); });
    if (later == runs.begin()) return nullptr;
    const Run& run = *(later - 1);
    return IsBefore(run.end, time) ? nullptr : &run;
}

// An epoch of which no run is kept, as one that was edited, has the run before it on the line. Time
// that turns, or was set back, ends the line: it would go over the same moments twice.
TimeLine ReadRuns(const EpochPortal& portal, const RunHistory& history) {
    TimeLine line;
    const AbEpoch* const focus = portal.FocusEpoch();
    line.now = focus->Time();
    double next = line.now;
    for (const AbEpoch* epoch = focus; epoch != nullptr; epoch = epoch->Parent()) {
        const auto run = RunTo(*epoch, history);
        if (!run) continue;
        const bool isBackwards = run->end < run->start;
        if (line.IsEmpty())
            line.isBackwards = isBackwards;
        else if (isBackwards != line.isBackwards && run->end != run->start)
            break;
        // A run that goes on is known up to its last batch.
        const bool isFocus = line.IsEmpty() && epoch == focus;
        if (!isFocus && line.IsBefore(next, run->end)) break;
        line.runs.push_back(*run);
        next = run->start;
    }
    std::reverse(line.runs.begin(), line.runs.end());
    return line;
}

TimeLine ReadTimeLine(const EpochPortal& portal, const RunHistory& history) {
    TimeLine line = ReadRuns(portal, history);
    for (const TimeLine::Run& run : line.runs)
        AddMarks(run, history, &line);
    AddEpochs(portal, &line);
    return line;
}
