#include "Calculation/Series/PairPath.h"

#include <cmath>

#include "Calculation/Series/Bernstein.h"

namespace {

// Halving a piece so often leaves nothing that coordinates could tell apart.
constexpr int32 kMaxHalvings = 64;
// A piece on which the pair moves by no more reaches than these loses no digits to squares.
constexpr double kMaxReaches = 16.0;
}  // namespace

PairPath::PairPath(const SeriesStore& store, int32 slotA, int32 slotB, double theta)
    : terms_(store.Arrays().order + 2), at_{} {
    const SeriesArrays& arrays = store.Arrays();
    const double* const a = arrays.Vector(slotA / kSlots) + slotA % kSlots;
    const double* const b = arrays.Vector(slotB / kSlots) + slotB % kSlots;
    for (int32 axis = 0; axis < 3; axis++) {
        const auto difference = [&](int32 k) {
            const int32 row = (3 * k + axis) * kSlots;
            return b[row] - a[row];
        };
        double power = 1.0;
        for (int32 k = 0; k < terms_; k++, power *= theta) {
            const double low = k < 2 ? difference(terms_ + k) : 0.0;
            at_[axis][k] = (difference(k) + low) * power;
        }
    }
}

double PairPath::FirstWithin(double reach) const {
    return FirstWithin(reach, 0);
}

bool PairPath::LeavesFrom(double reach) const {
    double square = 0.0;
    double growth = 0.0;
    for (const auto& axis : at_) {
        square += axis[0] * axis[0];
        growth += axis[0] * axis[1];
    }
    return square > reach * reach && growth > 0.0;
}

double PairPath::FirstWithin(double reach, int32 halvings) const {
    double distance2 = 0.0;
    double moved2 = 0.0;
    for (const auto& axis : at_) {
        double moved = 0.0;
        for (int32 k = terms_ - 1; k > 0; k--)
            moved += std::fabs(axis[k]);
        distance2 += axis[0] * axis[0];
        moved2 += moved * moved;
    }
    if (distance2 <= reach * reach) return 0.0;
    const double moved = std::sqrt(moved2);
    if (distance2 > (reach + moved) * (reach + moved)) return -1.0;
    if (moved <= kMaxReaches * reach) return FirstRoot(reach);
    if (halvings == kMaxHalvings) return -1.0;
    const double first = First().FirstWithin(reach, halvings + 1);
    if (first >= 0.0) return first / 2;
    const double second = Second().FirstWithin(reach, halvings + 1);
    return second >= 0.0 ? 0.5 + second / 2 : -1.0;
}

PairPath PairPath::First() const {
    PairPath half = *this;
    for (auto& axis : half.at_) {
        double power = 1.0;
        for (int32 k = 0; k < terms_; k++, power *= 0.5)
            axis[k] *= power;
    }
    return half;
}

PairPath PairPath::Second() const {
    PairPath half = First();
    for (auto& axis : half.at_)
        for (int32 i = 0; i < terms_ - 1; i++)
            for (int32 k = terms_ - 2; k >= i; k--)
                axis[k] += axis[k + 1];
    return half;
}

double PairPath::SquareAt(double share) const {
    double square = 0.0;
    for (const auto& axis : at_) {
        double sum = 0.0;
        for (int32 k = terms_ - 1; k >= 0; k--)
            sum = sum * share + axis[k];
        square += sum * sum;
    }
    return square;
}

double PairPath::FirstRoot(double reach) const {
    const int32 degree = 2 * (terms_ - 1);
    Bernstein::Coefficients powers{};
    for (const auto& axis : at_)
        for (int32 i = 0; i < terms_; i++)
            for (int32 k = 0; k < terms_; k++)
                powers[static_cast<std::size_t>(i + k)] += axis[i] * axis[k];
    powers[0] -= reach * reach;
    const Bernstein whole(degree, powers);
    // What is left to search, the first piece last.
    constexpr std::size_t kMaxPieces = 50;
    std::vector<Bernstein> pieces = {whole};
    while (!pieces.empty()) {
        Bernstein piece = pieces.back();
        pieces.pop_back();
        const int32 changes = piece.SignChanges();
        if (piece.at[0] <= 0.0) return piece.begin;
        if (changes == 0) continue;
        if (changes == 1) return RootBetween(piece.begin, piece.End(), reach);
        // Paths that only just touch, if at all.
        if (pieces.size() + 1 >= kMaxPieces || piece.length < 1e-14) continue;
        pieces.push_back(piece.Split());
        pieces.push_back(piece);
    }
    return -1.0;
}

void PairPath::FindTurns(std::vector<double>* cuts) const {
    Bernstein::Coefficients growth{};
    for (const auto& axis : at_)
        for (int32 i = 0; i < terms_; i++)
            for (int32 k = 1; k < terms_; k++)
                growth[static_cast<std::size_t>(i + k - 1)] += axis[i] * axis[k] * k;
    SeparateRoots(Bernstein(2 * terms_ - 3, growth), cuts);
}

// Halves the bracket until nothing is left of it.
double PairPath::RootBetween(double apart, double within, double reach) const {
    for (int32 i = 0; i < 100; i++) {
        const double middle = apart + (within - apart) / 2;
        if (!(middle > apart && middle < within)) break;
        if (SquareAt(middle) > reach * reach)
            apart = middle;
        else
            within = middle;
    }
    return within;
}
