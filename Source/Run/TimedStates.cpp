#include "Run/TimedStates.h"

#include <algorithm>

#include "Calculation/Series/SeriesStep.h"
#include "Model/Systems/Body.h"
#include "Run/CsvWriter.h"
#include "Simulation/Document/SystemState.h"

void TimedStates::WantTimes(const std::vector<double>& times) {
    times_ = times;
    std::sort(times_.begin(), times_.end());
    times_.erase(std::unique(times_.begin(), times_.end()), times_.end());
}

void TimedStates::Begin(CsvWriter* writer, const SystemState& start, bool isBackwards) {
    writer_ = writer;
    if (isBackwards) std::reverse(times_.begin(), times_.end());
    const auto first = std::find_if(times_.begin(), times_.end(), [&](double time) {
        return isBackwards ? time <= start.time : time >= start.time;
    });
    next_ = skipped_ = static_cast<std::size_t>(first - times_.begin());
    const bool isWanted = every_ > 0 || (next_ < times_.size() && times_[next_] == start.time);
    if (!isWanted) return;
    writer_->WriteReport(written_++, start.time, start.positions.data(), start.velocities.data());
    if (every_ == 0) next_++;
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
        if (piece.IsBackwards() ? time < piece.toTime : time > piece.toTime) return;
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
