// The rows of numbers, one number for each body, that ranks exchange while they evaluate forces:
// each rank has the bodies of some vectors. Owned by an evaluator.
#pragma once

#include <initializer_list>
#include <vector>

#include "Calculation/Ranks.h"

class RankRows {
public:
    using Rows = std::initializer_list<double*>;

    // `ranks` is not owned.
    RankRows(Ranks* ranks, int32 bodies);

    [[nodiscard]] int32 CountBodies() const { return bodies_; }
    // This rank's own bodies.
    [[nodiscard]] int32 Begin() const;
    [[nodiscard]] int32 End() const;

    // All get the rows of number 0.
    void Tell(Rows rows);
    // All get the bodies of all, and the greatest `value` of any.
    void Share(Rows rows, std::initializer_list<double*> values);
    // Number 0 gets the bodies of all.
    void Gather(Rows rows);

private:
    [[nodiscard]] RankParts PartsOf(std::size_t rows, std::size_t values) const;
    void Pack(Rows rows, int64 at);
    void Unpack(Rows rows, const RankParts& parts);

    Ranks* const ranks_;
    const int32 bodies_;
    const RankParts vectors_;
    std::vector<double> buffer_;
};
