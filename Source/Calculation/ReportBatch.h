// The reports that one Calculate makes: parallel arrays of times, positions and velocities, reused
// from batch to batch. Owned by the calculator and filled on its thread; consumers read it while
// the calculator waits for them.
#pragma once

#include <cstddef>
#include <vector>

#include "SupportDefs.h"

// The bodies' coordinates as an integrator keeps them: one array per axis (x, y, z), in body order.
// Metres and metres per second.
struct BodyArrays {
    const double* position[3];
    const double* velocity[3];
};

class ReportBatch {
public:
    // From now on a report holds `bodies` bodies and the arrays have room for `reports` of them.
    // They only ever grow, and keep what they hold. Not inline: everything else allocates nothing.
    void SetSize(int32 bodies, int32 reports);

    void Clear() {
        nextTime_ = 0;
        nextPosition_ = 0;
    }

    // Appends one report. There is no bounds check: nobody makes more than SetSize has room for.
    void Add(double time, const BodyArrays& bodies) {
        times_[nextTime_++] = time;
        Interleave(bodies.position, positions_.data() + nextPosition_);
        Interleave(bodies.velocity, velocities_.data() + nextPosition_);
        nextPosition_ += 3 * bodies_;
    }

    // Report k: times[k], and body i's coordinates at k * stride + 3i ... 3i + 2, where the stride
    // is three times the number of bodies.
    [[nodiscard]] double* Times() { return times_.data(); }
    [[nodiscard]] double* Positions() { return positions_.data(); }
    [[nodiscard]] double* Velocities() { return velocities_.data(); }
    [[nodiscard]] const double* Times() const { return times_.data(); }
    [[nodiscard]] const double* Positions() const { return positions_.data(); }
    [[nodiscard]] const double* Velocities() const { return velocities_.data(); }

    // In doubles; the position capacity is that of each of the two coordinate arrays.
    [[nodiscard]] std::size_t TimeCapacity() const { return times_.size(); }
    [[nodiscard]] std::size_t PositionCapacity() const { return positions_.size(); }

private:
    void Interleave(const double* const axes[3], double* __restrict out) const {
        const double* const x = axes[0];
        const double* const y = axes[1];
        const double* const z = axes[2];
        for (std::size_t i = 0; i < bodies_; i++) {
            out[3 * i] = x[i];
            out[3 * i + 1] = y[i];
            out[3 * i + 2] = z[i];
        }
    }

    std::vector<double> times_;
    std::vector<double> positions_;
    std::vector<double> velocities_;
    std::size_t bodies_ = 0;
    std::size_t nextTime_ = 0;
    std::size_t nextPosition_ = 0;
};
