// When the frames of a film are, and of which kept runs. Plain values.
#pragma once

#include <cstdint>
#include <vector>

class AbEpoch;
class EpochPortal;
class RunHistory;

// The runs that a film can show: those on the branch in focus that are kept, up to now, without a
// gap.
struct FilmRuns {
    struct Run {
        const AbEpoch* epoch;  // only compared, unless the tree has it still
        double start;          // s
        double end;            // s
    };
    std::vector<Run> runs;  // in the order in which they were made

    [[nodiscard]] bool IsEmpty() const { return runs.empty(); }
    [[nodiscard]] double Start() const { return runs.front().start; }
    [[nodiscard]] double End() const { return runs.back().end; }
    // The run that shows that time: the later one of two that meet there.
    [[nodiscard]] const AbEpoch* RunAt(double time) const;
};

// The caller holds the portal's read lock.
[[nodiscard]] FilmRuns ReadFilmRuns(const EpochPortal& portal, const RunHistory& history);

struct FilmPlan {
    static constexpr int64_t kMaxFrames = 1'000'000;
    static constexpr int32_t kMinRate = 1;  // frames per second, as the next one
    static constexpr int32_t kMaxRate = 120;
    static constexpr int32_t kUsualRate = 25;
    static constexpr double kUsualSeconds = 20.0;

    double start = 0.0;  // s, of the simulation
    double end = 0.0;    // s
    double step = 1.0;   // s, from frame to frame

    // Over all runs, of which there is one at least; `pace`: seconds of the simulation that a
    // second of the film shows.
    [[nodiscard]] static FilmPlan Of(const FilmRuns& runs, double pace, double framesPerSecond);
    // More than kMaxFrames: too many.
    [[nodiscard]] int64_t CountFrames() const;
    [[nodiscard]] double TimeOf(int64_t frame) const;
};
