// Room for rows that are filled before anything reads them. It is not cleared: whoever fills it is
// the first to touch it, so that a run with hundreds of megabytes of them begins at once and can
// be given up at once. A plain value.
#pragma once

#include <cstddef>
#include <memory>

#include "Calculation/Series/SplitStates.h"

class UnsetRows {
public:
    // What was there is lost. Much more room than is needed is given back.
    void Resize(std::size_t rows) {
        if (rows > room_ || rows < room_ / 4) {
            room_ = 0;
            rows_.reset();
            rows_ = std::make_unique_for_overwrite<SlotRow[]>(rows);
            room_ = rows;
        }
        size_ = rows;
    }
    // Null if there are none.
    [[nodiscard]] double* From(std::size_t row) const {
        return size_ == 0 ? nullptr : rows_[row].numbers;
    }

private:
    std::unique_ptr<SlotRow[]> rows_;
    std::size_t size_ = 0;
    std::size_t room_ = 0;
};
