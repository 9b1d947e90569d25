#include "ReportBatch.h"

namespace {

// To that size exactly: a vector left to itself would reserve twice as much.
void Grow(std::vector<double>* array, std::size_t size) {
    if (size <= array->size()) return;
    array->reserve(size);
    array->resize(size);
}

}  // namespace

void ReportBatch::SetSize(int32 bodies, int32 reports) {
    bodies_ = static_cast<std::size_t>(bodies);
    const auto count = static_cast<std::size_t>(reports);
    Grow(&times_, count);
    Grow(&positions_, 3 * bodies_ * count);
    Grow(&velocities_, 3 * bodies_ * count);
}
