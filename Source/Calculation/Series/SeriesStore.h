// The memory of the series of all bodies, and which body stands in which slot: as in SplitStates,
// or with the massive ones in another order. Owned by a stepper; allocates in Resize only.
#pragma once

#include <cstddef>
#include <vector>

#include "Calculation/Series/SeriesInstances.h"
#include "Calculation/Series/SplitStates.h"
#include "Platform/Support/SupportDefs.h"

class SeriesStore {
public:
    // `order` is one of those compiled.
    void Resize(int32 order, int32 bodies, int32 massive);

    [[nodiscard]] const SeriesArrays& Arrays() const { return arrays_; }
    [[nodiscard]] int32 SlotOf(int32 body) const {
        return body < arrays_.massive ? slots_[static_cast<std::size_t>(body)] : body + skipped_;
    }
    [[nodiscard]] int32 BodyIn(int32 massiveSlot) const {
        return bodies_[static_cast<std::size_t>(massiveSlot)];
    }
    void PlaceInOrder();
    // The massive body `order[slot]` goes to each slot.
    void PlaceMassive(const int32* order);

    // GM in m3/s2 of a massive body.
    void SetGM(int32 body, double gm) { gm_[static_cast<std::size_t>(body)] = gm; }
    [[nodiscard]] double GM(int32 body) const {
        return body < arrays_.massive ? gm_[static_cast<std::size_t>(body)] : 0.0;
    }
    // s, a power of two; negative when time runs backwards.
    void SetScale(double scale) { arrays_.scale = scale; }

    // The pulls, and orders 0 and 1.
    void Begin(const SplitStates& states);
    // Places and velocities at `theta` scales. `low` need not be kept. False when one is not
    // finite.
    bool Evaluate(const SeriesInstance& kernels, double theta, SplitStates* states);

private:
    void BeginVector(int32 vector, const SplitStates& states);
    void BeginSlot(int32 slot, int32 from, const SplitStates& states);

    SeriesArrays arrays_;
    std::vector<SlotRow> series_;
    std::vector<SlotRow> pull_;
    std::vector<double> gm_;
    std::vector<int32> slots_;   // of massive bodies
    std::vector<int32> bodies_;  // the other way round
    int32 skipped_ = 0;
    bool isInOrder_ = true;
    SplitStates placed_;  // as evaluated, when not in order
};
