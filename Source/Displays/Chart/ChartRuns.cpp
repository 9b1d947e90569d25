#include "Displays/Chart/ChartRuns.h"

#include <algorithm>
#include <limits>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Simulation/History/RunHistory.h"

namespace {

const RunEvent::Before* Find(const RunEvent& event, int64 body) {
    for (const RunEvent::Before& before : event.before)
        if (before.id == body) return &before;
    return nullptr;
}

}  // namespace

// From the run's end back: what happened to a body tells what it was before that.
std::vector<ChartRun::MassStep> ChartRun::MassesOf(int64 body, int64 other) const {
    constexpr double kEver = -std::numeric_limits<double>::infinity();
    std::unordered_map<int64, double> now;
    for (const int64 id : {body, other})
        if (const auto found = gm.find(id); found != gm.end()) now[id] = found->second;
    std::vector<MassStep> steps{{kEver, now[body] + now[other]}};
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        bool isTheirs = false;
        for (const int64 id : {body, other}) {
            const RunEvent::Before* const before = Find(*event, id);
            if (before == nullptr) continue;
            now[id] = before->gm;
            isTheirs = true;
        }
        if (!isTheirs) continue;
        // Where time falls, what was before comes later.
        const double sum = now[body] + now[other];
        if (isBackwards) {
            steps.push_back({event->time, sum});
        } else {
            steps.front().time = event->time;
            steps.insert(steps.begin(), {kEver, sum});
        }
    }
    return steps;
}

std::vector<ChartRun> ReadChartRuns(const EpochPortal& portal, const TimeLine& line,
                                    const RunHistory& history) {
    std::vector<ChartRun> runs;
    for (const TimeLine::Run& kept : line.runs) {
        if (!kept.isKept || !portal.HasEpoch(kept.epoch)) continue;
        ChartRun run{kept.epoch, std::min(kept.start, kept.end), std::max(kept.start, kept.end),
                     {},         history.Events(kept.epoch),     line.isBackwards};
        for (const int64 body : history.BodiesOf(kept.epoch))
            if (const MassSystem* const found = kept.epoch->SystemFromID(body); found != nullptr)
                run.gm.emplace(body, found->M());
        runs.push_back(std::move(run));
    }
    if (line.isBackwards) std::reverse(runs.begin(), runs.end());
    return runs;
}
