#include "Run/TimedStates.h"

#include <algorithm>

#include "Calculation/Series/SeriesStep.h"
#include "Model/Systems/Body.h"
#include "Run/CsvWriter.h"
#include "Run/RunRecord.h"
#include "Simulation/Document/SystemState.h"

std::vector<double> TimedStates::Rising(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

void TimedStates::Begin(CsvWriter* writer, const SystemState& start, const RunRecord& run) {
    writer_ = writer;
    steps_ = run.steps;
    SkipTo(start.time);
    skipped_ = next_;
    const bool isTime = next_ < times_.size() && times_[next_] == start.time;
    const bool isStep = every_ > 0 && steps_ % every_ == 0;
    if (!isTime && !isStep) return;
    if (isStep) written_ = steps_;
    writer_->WriteReport(written_++, start.time, start.positions.data(), start.velocities.data());
    if (isTime) next_++;
}

void TimedStates::GoOn(CsvWriter* writer, const SystemState& state, const RunRecord& run) {
    writer_ = writer;
    steps_ = run.steps;
    SkipTo(run.startTime);
    skipped_ = next_;
    while (next_ < times_.size() && !IsAhead(times_[next_], state.time))
        next_++;
    const ReportMark& mark = *run.reportFile;
    written_ = mark.lastRow.empty() ? 0 : mark.LastReport() + 1;
}

void TimedStates::SkipTo(double time) {
    if (isBackwards_) std::reverse(times_.begin(), times_.end());
    next_ = 0;
    while (next_ < times_.size() && IsAhead(time, times_[next_]))
        next_++;
}

void TimedStates::BodiesAre(double time, const std::vector<Body*>& bodies, int32 /*massive*/) {
    SystemState state;
    state.time = time;
    for (const Body* const body : bodies) {
        state.ids.push_back(body->ID());
        state.names.push_back(body->Name());
    }
    writer_->SetBodies(state);
    bodies_ = bodies.size();
}

void TimedStates::Moved(const Piece& piece) {
    if (every_ > 0) {
        if (piece.to < piece.step.Theta()) return;
        steps_++;
        if (steps_ % every_ == 0) {
            written_ = steps_;
            Write(piece.step, piece.to, piece.toTime);
        }
        return;
    }
    for (; next_ < times_.size(); next_++) {
        const double time = times_[next_];
        if (IsAhead(time, piece.toTime)) return;
        Write(piece.step, std::clamp(piece.step.ThetaAt(time), piece.from, piece.to), time);
    }
}

void TimedStates::Write(const SeriesStep& step, double theta, double time) {
    positions_.clear();
    velocities_.clear();
    for (std::size_t i = 0; i < bodies_; i++) {
        const SeriesStep::BodyMotion motion = step.BodyAt(static_cast<int32>(i), theta);
        positions_.insert(positions_.end(),
                          {motion.position.x, motion.position.y, motion.position.z});
        velocities_.insert(velocities_.end(),
                           {motion.velocity.x, motion.velocity.y, motion.velocity.z});
    }
    writer_->WriteReport(written_++, time, positions_.data(), velocities_.data());
}
