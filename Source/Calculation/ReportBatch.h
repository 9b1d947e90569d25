// The reports that one Calculate makes: parallel arrays of times, positions and velocities, reused
// from batch to batch. Owned by the calculator and filled on its thread; consumers read it while
// the calculator waits for them.
#pragma once

#include <cstddef>
#include <memory>

#include "Calculation/BodyArrays.h"
#include "Platform/Support/SupportDefs.h"

class ReportBatch {
public:
    // A batch takes no more memory than this, in bytes, if it can: one report it holds in any case.
    static constexpr std::size_t kMaxBytes = 16'000'000;

    // From now on a report holds `bodies` bodies and the arrays have room for `reports` of them, or
    // for as many as the memory allows. They only grow, and keep what they hold. Not inline:
    // everything else allocates nothing.
    void SetSize(int32 bodies, int32 reports);
    // The same with nothing to keep: larger arrays than these need make room.
    void Restart(int32 bodies, int32 reports);
    // Reports that a batch may hold.
    [[nodiscard]] int32 Room() const { return static_cast<int32>(room_); }

    void Clear() {
        nextTime_ = 0;
        nextPosition_ = 0;
    }

    // Appends one report. There is no bounds check: nobody makes more than there is room for.
    void Add(double time, const BodyArrays& bodies) {
        times_.data[nextTime_++] = time;
        Interleave(bodies.position, positions_.data.get() + nextPosition_);
        Interleave(bodies.velocity, velocities_.data.get() + nextPosition_);
        nextPosition_ += 3 * bodies_;
    }

    // Report k: times[k], and body i's coordinates at k * stride + 3i ... 3i + 2, where the stride
    // is three times the number of bodies.
    [[nodiscard]] double* Times() { return times_.data.get(); }
    [[nodiscard]] double* Positions() { return positions_.data.get(); }
    [[nodiscard]] double* Velocities() { return velocities_.data.get(); }
    [[nodiscard]] const double* Times() const { return times_.data.get(); }
    [[nodiscard]] const double* Positions() const { return positions_.data.get(); }
    [[nodiscard]] const double* Velocities() const { return velocities_.data.get(); }

    // The reports before the first that holds what is no finite number.
    [[nodiscard]] int32 CountFinite() const;

    // In doubles; the position capacity is that of each of the two coordinate arrays.
    [[nodiscard]] std::size_t TimeCapacity() const { return times_.capacity; }
    [[nodiscard]] std::size_t PositionCapacity() const { return positions_.capacity; }

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

    // Memory that is not filled is not touched: with very many bodies a batch seldom gets full.
    struct Array {
        std::unique_ptr<double[]> data;
        std::size_t capacity = 0;

        // Keeps the first `used` numbers.
        void Grow(std::size_t size, std::size_t used);
    };

    Array times_;
    Array positions_;
    Array velocities_;
    std::size_t bodies_ = 0;
    std::size_t room_ = 0;
    std::size_t nextTime_ = 0;
    std::size_t nextPosition_ = 0;
};
