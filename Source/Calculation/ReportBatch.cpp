#include "ReportBatch.h"

#include <algorithm>

void ReportBatch::Array::Grow(std::size_t size, std::size_t used) {
    if (size <= capacity) return;
    auto larger = std::make_unique_for_overwrite<double[]>(size);
    std::copy_n(data.get(), used, larger.get());
    data = std::move(larger);
    capacity = size;
}

void ReportBatch::SetSize(int32 bodies, int32 reports) {
    bodies_ = static_cast<std::size_t>(bodies);
    const auto count = static_cast<std::size_t>(reports);
    times_.Grow(count, nextTime_);
    positions_.Grow(3 * bodies_ * count, nextPosition_);
    velocities_.Grow(3 * bodies_ * count, nextPosition_);
}
