// Writes the bodies' states at times of the user's choosing, exactly then, or where steps end:
// taken from the motion between the reports. Owned by the runner; works on the calculation thread,
// which waits meanwhile.
#pragma once

#include <vector>

#include "Calculation/MotionWatcher.h"

class CsvWriter;
struct RunRecord;
struct SystemState;

class TimedStates final : public MotionWatcher {
public:
    // Each time once.
    [[nodiscard]] static std::vector<double> Rising(std::vector<double> times);

    // Rising, s.
    void WantTimes(const std::vector<double>& times) { times_ = times; }
    // Every so many steps, and where the run begins.
    void WantSteps(int64 every) { every_ = every; }
    // Before the next two.
    void SetBackwards(bool isBackwards) { isBackwards_ = isBackwards; }
    // A run begins, or goes on into a new file; the writer, which is not owned, has its header.
    void Begin(CsvWriter* writer, const SystemState& start, const RunRecord& run);
    // The writer has all states until this one, by the record.
    void GoOn(CsvWriter* writer, const SystemState& state, const RunRecord& run);
    // Times that the run has not come to.
    [[nodiscard]] std::size_t Missed() const { return skipped_ + times_.size() - next_; }

    void BodiesAre(double time, const std::vector<Body*>& bodies, int32 massive) override;
    void Moved(const Piece& piece) override;
    void Touched(double, const BodyArrays&, const std::vector<CollidingPair>&) override {}

private:
    void SkipTo(double time);
    [[nodiscard]] bool IsAhead(double time, double other) const {
        return isBackwards_ ? time < other : time > other;
    }
    void Write(const SeriesStep& step, double theta, double time);

    CsvWriter* writer_ = nullptr;
    bool isBackwards_ = false;
    std::vector<double> times_;  // on the way that the run goes
    std::size_t next_ = 0;       // of them
    std::size_t skipped_ = 0;    // on the other way
    int64 every_ = 0;            // steps; 0: none are asked for
    int64 steps_ = 0;
    int64 written_ = 0;
    std::size_t bodies_ = 0;
    std::vector<double> positions_;
    std::vector<double> velocities_;
};
