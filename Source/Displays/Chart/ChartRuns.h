// The runs that a chart shows: those on the line of the epoch in focus, in the order of time, and
// what their bodies weigh. Plain values, copied from the model under its read lock.
#pragma once

#include <unordered_map>
#include <vector>

#include "Simulation/History/KeptRun.h"
#include "Simulation/History/TimeLine.h"

struct ChartRun {
    const AbEpoch* epoch;                  // only compared
    double start;                          // s; before the end, as `end` is after all
    double end;                            // s
    std::unordered_map<int64, double> gm;  // m3/s2, at the run's end
    std::vector<RunEvent> events;          // in the order of the run
    bool isBackwards;                      // time falls in it

    // From that time on, until that of the next step, two bodies have so much together.
    struct MassStep {
        double time;  // s
        double gm;    // m3/s2
    };
    // In the order of time, the first one from ever. Of a body that is not there: 0.
    [[nodiscard]] std::vector<MassStep> MassesOf(int64 body, int64 other) const;
};

// What is kept of the runs. The caller holds the portal's read lock.
[[nodiscard]] std::vector<ChartRun> ReadChartRuns(const EpochPortal& portal, const TimeLine& line,
                                                  const RunHistory& history);
