// Where one body of a pair is from the other, over a piece of a step: a polynomial in the share of
// the piece, from 0 to 1. A plain value.
#pragma once

#include <vector>

#include "Calculation/Series/SeriesStore.h"

class PairPath {
public:
    // From 0 to `theta` scales.
    PairPath(const SeriesStore& store, int32 slotA, int32 slotB, double theta);

    // The first share at which the distance is `reach` or less; negative: at none.
    [[nodiscard]] double FirstWithin(double reach) const;
    // At the start the bodies are farther apart than that and moving away from each other.
    [[nodiscard]] bool LeavesFrom(double reach) const;
    // Appends shares, rising, between two of which the bodies turn at most once from approaching
    // each other to going apart, or back.
    void FindTurns(std::vector<double>* cuts) const;

private:
    static constexpr int32 kMaxTerms = kMaxSeriesOrder + 2;

    [[nodiscard]] double FirstWithin(double reach, int32 halvings) const;
    // The first half of the piece, and the second.
    [[nodiscard]] PairPath First() const;
    [[nodiscard]] PairPath Second() const;
    [[nodiscard]] double SquareAt(double share) const;
    // By the roots of the square as a polynomial.
    [[nodiscard]] double FirstRoot(double reach) const;
    [[nodiscard]] double RootBetween(double apart, double within, double reach) const;

    int32 terms_;
    double at_[3][kMaxTerms];
};
