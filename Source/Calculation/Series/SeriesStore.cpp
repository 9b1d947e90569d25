#include "Calculation/Series/SeriesStore.h"

#include <algorithm>
#include <numeric>

void SeriesStore::Resize(int32 order, int32 bodies, int32 massive) {
    arrays_.order = order;
    arrays_.bodies = bodies;
    arrays_.massive = massive;
    arrays_.massiveVectors = SplitStates::CountVectors(massive);
    arrays_.vectors = arrays_.massiveVectors + SplitStates::CountVectors(bodies - massive);
    series_.assign(static_cast<std::size_t>(arrays_.Stride() / kSlots * arrays_.vectors), {});
    pull_.assign(static_cast<std::size_t>(arrays_.massiveVectors), {});
    gm_.assign(static_cast<std::size_t>(massive), 0.0);
    slots_.resize(static_cast<std::size_t>(massive));
    bodies_.resize(static_cast<std::size_t>(massive));
    skipped_ = arrays_.massiveVectors * kSlots - massive;
    arrays_.series = series_.empty() ? nullptr : series_.data()->numbers;
    arrays_.pull = pull_.empty() ? nullptr : pull_.data()->numbers;
    if (massive > kMaxInRing) placed_.Resize(bodies, massive);
    PlaceInOrder();
}

void SeriesStore::PlaceInOrder() {
    std::iota(slots_.begin(), slots_.end(), 0);
    std::iota(bodies_.begin(), bodies_.end(), 0);
    isInOrder_ = true;
}

void SeriesStore::PlaceMassive(const int32* order) {
    for (int32 slot = 0; slot < arrays_.massive; slot++)
        slots_[static_cast<std::size_t>(order[slot])] = slot;
    std::copy(order, order + arrays_.massive, bodies_.begin());
    isInOrder_ = false;
}

void SeriesStore::Begin(const SplitStates& states) {
    const double scale2 = arrays_.scale * arrays_.scale;
    for (int32 body = 0; body < arrays_.massive; body++)
        arrays_.pull[SlotOf(body)] = gm_[static_cast<std::size_t>(body)] * scale2;
    for (int32 vector = 0; vector < arrays_.vectors; vector++)
        BeginVector(vector, states);
    if (!isInOrder_)
        for (int32 body = 0; body < arrays_.massive; body++)
            BeginSlot(SlotOf(body), body, states);
}

void SeriesStore::BeginVector(int32 vector, const SplitStates& states) {
    constexpr int32 kNumbers = 3 * kSlots;
    double* const rows = arrays_.Vector(vector);
    double* const lowRows = rows + (arrays_.order + 2) * kNumbers;
    const double* const high = states.High() + SplitStates::Index(vector * kSlots, 0);
    const double* const low = states.Low() + SplitStates::Index(vector * kSlots, 0);
    const double scale = arrays_.scale;
    for (int32 i = 0; i < kNumbers; i++) {
        rows[i] = high[i];
        rows[kNumbers + i] = high[kNumbers + i] * scale;
        lowRows[i] = low[i];
        lowRows[kNumbers + i] = low[kNumbers + i] * scale;
    }
}

void SeriesStore::BeginSlot(int32 slot, int32 from, const SplitStates& states) {
    double* const rows = arrays_.Vector(slot / kSlots) + slot % kSlots;
    double* const lowRows = rows + (arrays_.order + 2) * 3 * kSlots;
    for (int32 row = 0; row < SplitStates::kRows; row++) {
        const double unit = row < 3 ? 1.0 : arrays_.scale;
        rows[row * kSlots] = states.High()[SplitStates::Index(from, row)] * unit;
        lowRows[row * kSlots] = states.Low()[SplitStates::Index(from, row)] * unit;
    }
}

bool SeriesStore::Evaluate(const SeriesInstance& kernels, double theta, SplitStates* states) {
    if (isInOrder_) return kernels.evaluate(arrays_, theta, states->High(), states->Low());
    if (!kernels.evaluate(arrays_, theta, placed_.High(), placed_.Low())) return false;
    const auto massive =
        static_cast<std::ptrdiff_t>(SplitStates::Index(arrays_.massiveVectors * kSlots, 0));
    const auto all = static_cast<std::ptrdiff_t>(SplitStates::Index(arrays_.vectors * kSlots, 0));
    std::copy(placed_.High() + massive, placed_.High() + all, states->High() + massive);
    std::copy(placed_.Low() + massive, placed_.Low() + all, states->Low() + massive);
    for (int32 body = 0; body < arrays_.massive; body++)
        for (int32 row = 0; row < SplitStates::kRows; row++) {
            const std::size_t from = SplitStates::Index(SlotOf(body), row);
            const std::size_t to = SplitStates::Index(body, row);
            states->High()[to] = placed_.High()[from];
            states->Low()[to] = placed_.Low()[from];
        }
    return true;
}
