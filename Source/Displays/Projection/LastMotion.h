// How the bodies of a run move in its newest report, for whoever asks about some of them. Used with
// the display's lock.
#pragma once

#include <optional>
#include <vector>

#include "Displays/Hands/MeasuredPair.h"
#include "Platform/Support/SupportDefs.h"

class LastMotion {
public:
    // Of so many bodies there will be reports; of the ones before nothing is known any more.
    void Begin(std::size_t bodies) {
        bodies_ = bodies;
        positions_.clear();
    }
    // The last of the reports.
    void Take(int32 reports, const double* positions, const double* velocities) {
        if (reports <= 0) return;
        const std::size_t first = 3 * bodies_ * static_cast<std::size_t>(reports - 1);
        positions_.assign(positions + first, positions + first + 3 * bodies_);
        velocities_.assign(velocities + first, velocities + first + 3 * bodies_);
    }
    // In mass order; nothing before the first report.
    [[nodiscard]] std::optional<BodyMotion> Of(int32 body) const {
        if (body < 0 || 3 * static_cast<std::size_t>(body) >= positions_.size())
            return std::nullopt;
        const double* const r = &positions_[3 * static_cast<std::size_t>(body)];
        const double* const v = &velocities_[3 * static_cast<std::size_t>(body)];
        return BodyMotion{{r[0], r[1], r[2]}, {v[0], v[1], v[2]}};
    }

private:
    std::size_t bodies_ = 0;
    std::vector<double> positions_;  // m
    std::vector<double> velocities_;
};
