// Places and velocities of all bodies, each the sum of a high and a low number, in slots: rows
// [vector][6][8] of m and m/s. Massive bodies stand in the order of their indices, massless ones
// begin a vector of their own. A plain value.
#pragma once

#include <cstddef>
#include <vector>

#include "Calculation/Series/SeriesInstances.h"
#include "Platform/Support/SupportDefs.h"

struct alignas(64) SlotRow {
    double numbers[kSlots];
};

class SplitStates {
public:
    static constexpr int32 kRows = 6;  // three of the place, three of the velocity

    void Resize(int32 bodies, int32 massive) {
        massive_ = massive;
        skipped_ = CountVectors(massive) * kSlots - massive;
        vectors_ = CountVectors(massive) + CountVectors(bodies - massive);
        const auto rows = static_cast<std::size_t>(kRows * vectors_);
        high_.assign(rows, {});
        low_.assign(rows, {});
    }
    [[nodiscard]] int32 CountVectors() const { return vectors_; }
    [[nodiscard]] int32 SlotOf(int32 body) const {
        return body < massive_ ? body : body + skipped_;
    }

    [[nodiscard]] double* High() { return high_.empty() ? nullptr : high_.data()->numbers; }
    [[nodiscard]] double* Low() { return low_.empty() ? nullptr : low_.data()->numbers; }
    [[nodiscard]] const double* High() const {
        return high_.empty() ? nullptr : high_.data()->numbers;
    }
    [[nodiscard]] const double* Low() const {
        return low_.empty() ? nullptr : low_.data()->numbers;
    }
    // Of the high numbers, and of the low ones.
    [[nodiscard]] std::size_t Bytes() const { return high_.size() * sizeof(SlotRow); }
    // Where a slot's number of a row is.
    [[nodiscard]] static std::size_t Index(int32 slot, int32 row) {
        return static_cast<std::size_t>(int64{kRows * kSlots} * (slot / kSlots) + row * kSlots +
                                        slot % kSlots);
    }

    static int32 CountVectors(int32 bodies) { return (bodies + kSlots - 1) / kSlots; }

private:
    int32 massive_ = 0;
    int32 skipped_ = 0;
    int32 vectors_ = 0;
    std::vector<SlotRow> high_;
    std::vector<SlotRow> low_;
};
