#include "Displays/Film/FilmPlan.h"

#include <algorithm>
#include <cmath>

#include "Simulation/History/TimeLine.h"

namespace {

// Of a step: the last frame is the run's last moment where that is nearly one more step.
constexpr double kRounding = 1e-9;

}  // namespace

const AbEpoch* FilmRuns::RunAt(double time) const {
    const AbEpoch* found = nullptr;
    for (const Run& run : runs)
        if (time >= std::min(run.start, run.end) && time <= std::max(run.start, run.end))
            found = run.epoch;
    return found;
}

FilmRuns ReadFilmRuns(const EpochPortal& portal, const RunHistory& history) {
    FilmRuns film;
    for (const TimeLine::Run& run : ReadRuns(portal, history).runs) {
        if (!film.IsEmpty() && (!run.isKept || run.start != film.End())) film.runs.clear();
        if (run.isKept && run.start != run.end)
            film.runs.push_back({run.epoch, run.start, run.end});
    }
    return film;
}

FilmPlan FilmPlan::Of(const FilmRuns& runs, double pace, double framesPerSecond) {
    return {runs.Start(), runs.End(), pace / framesPerSecond};
}

int64_t FilmPlan::CountFrames() const {
    const double steps = std::abs(end - start) / step;
    if (!(steps < static_cast<double>(kMaxFrames))) return kMaxFrames + 1;
    return static_cast<int64_t>(std::floor(steps + kRounding)) + 1;
}

double FilmPlan::TimeOf(int64_t frame) const {
    const double passed = static_cast<double>(frame) * step;
    return end < start ? std::max(start - passed, end) : std::min(start + passed, end);
}
