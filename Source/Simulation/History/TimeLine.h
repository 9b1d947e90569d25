// The runs that lie on the branch in focus, as one line of time, and what there is to mark on it. A
// plain value.
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
        bool isKept;   // else it can be made again (RunRemake), as far as one can see
    };
    struct Mark {
        enum class Kind {
            kEpoch,   // an epoch of this name, or the beginning of the run that led to it
            kMerger,  // `other` became part of the body of this name
        };
        Kind kind;
        double time;  // s
        std::string name;
        std::string other;
    };

    std::vector<Run> runs;     // in the order in which they were made
    std::vector<Mark> marks;   // as they come on the line
    double now = 0.0;          // s: the time of the epoch in focus
    bool isBackwards = false;  // time falls from its start to its end

    [[nodiscard]] bool IsEmpty() const { return runs.empty(); }
    [[nodiscard]] double Start() const { return runs.empty() ? now : runs.front().start; }
    [[nodiscard]] double End() const { return runs.empty() ? now : runs.back().end; }
    // The line comes to the one time before the other.
    [[nodiscard]] bool IsBefore(double time, double other) const {
        return isBackwards ? time > other : time < other;
    }
    // What is to be seen at that time lies behind; at the end of the line, and beyond, it is now.
    [[nodiscard]] bool IsPast(double time) const {
        return !IsEmpty() && (IsBefore(time, End()) || IsBefore(time, now));
    }
    // The run that the time lies in: the later one of two that meet there; null outside all.
    [[nodiscard]] const Run* RunAt(double time) const;
};

// Without and with the marks. The caller holds the portal's read lock.
[[nodiscard]] TimeLine ReadRuns(const EpochPortal& portal, const RunHistory& history);
[[nodiscard]] TimeLine ReadTimeLine(const EpochPortal& portal, const RunHistory& history);
