// The kept runs that lie on the branch in focus, as one line of time, and what there is to mark on
// it. A plain value.
#pragma once

#include <string>
#include <vector>

class AbEpoch;
class EpochPortal;
class RunHistory;

struct TimeLine {
    struct Run {
        const AbEpoch* epoch;
        double start;  // s
        double end;    // s
    };
    struct Mark {
        enum class Kind {
            kEpoch,   // a run of this name begins
            kMerger,  // `other` became part of the body of this name
        };
        Kind kind;
        double time;  // s
        std::string name;
        std::string other;
    };

    std::vector<Run> runs;    // the earliest first
    std::vector<Mark> marks;  // in the order of time
    double now = 0.0;         // s: the time of the epoch in focus

    [[nodiscard]] bool IsEmpty() const { return runs.empty(); }
    [[nodiscard]] double Start() const { return runs.empty() ? now : runs.front().start; }
    [[nodiscard]] double End() const { return runs.empty() ? now : runs.back().end; }
    // The run that the time lies in: the later one of two that meet there; null outside all.
    [[nodiscard]] const Run* RunAt(double time) const;
};

// Without and with the marks. The caller holds the portal's read lock.
[[nodiscard]] TimeLine ReadRuns(const EpochPortal& portal, const RunHistory& history);
[[nodiscard]] TimeLine ReadTimeLine(const EpochPortal& portal, const RunHistory& history);
