#include "Calculation/ReportBatch.h"

#include <algorithm>
#include <cmath>

namespace {

// Those of a report: its time, and two vectors of each body.
constexpr std::size_t NumbersOf(std::size_t bodies) {
    return 1 + 6 * bodies;
}

}  // namespace

void ReportBatch::Array::Grow(std::size_t size, std::size_t used) {
    if (size <= capacity) return;
    auto larger = std::make_unique_for_overwrite<double[]>(size);
    std::copy_n(data.get(), used, larger.get());
    data = std::move(larger);
    capacity = size;
}

void ReportBatch::SetSize(int32 bodies, int32 reports) {
    const auto count = static_cast<std::size_t>(bodies);
    const std::size_t most = kMaxBytes / (NumbersOf(count) * sizeof(double));
    const std::size_t room =
        std::min(static_cast<std::size_t>(reports), std::max<std::size_t>(most, 1));
    times_.Grow(room, nextTime_);
    positions_.Grow(3 * count * room, nextPosition_);
    velocities_.Grow(3 * count * room, nextPosition_);
    // Only now: where memory was lacking nothing has changed.
    bodies_ = count;
    room_ = room;
}

void ReportBatch::Restart(int32 bodies, int32 reports) {
    Clear();
    const std::size_t former = positions_.capacity;
    SetSize(bodies, reports);
    if (former <= 3 * bodies_ * room_ && times_.capacity <= room_) return;
    for (Array* const array : {&times_, &positions_, &velocities_})
        *array = {};
    SetSize(bodies, reports);
}

int32 ReportBatch::CountFinite() const {
    const auto areFinite = [](const Array& array, std::size_t first, std::size_t count) {
        const double* const numbers = array.data.get() + first;
        return std::all_of(numbers, numbers + count, [](double x) { return std::isfinite(x); });
    };
    const std::size_t stride = 3 * bodies_;
    std::size_t report = 0;
    while (report < nextTime_ && areFinite(times_, report, 1) &&
           areFinite(positions_, report * stride, stride) &&
           areFinite(velocities_, report * stride, stride))
        report++;
    return static_cast<int32>(report);
}
