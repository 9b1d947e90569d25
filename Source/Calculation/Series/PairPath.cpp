#include "Calculation/Series/PairPath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Halving a piece so often leaves nothing that coordinates could tell apart.
constexpr int32 kMaxHalvings = 64;
// A piece on which the pair moves by no more reaches than these loses no digits to squares.
constexpr double kMaxReaches = 16.0;
constexpr int32 kMaxDegree = 2 * (kMaxSeriesOrder + 1);

using Coefficients = std::array<double, kMaxDegree + 1>;
using Binomials = std::array<Coefficients, kMaxDegree + 1>;

constexpr Binomials MakeBinomials() {
    Binomials binomials{};
    for (std::size_t n = 0; n <= kMaxDegree; n++) {
        binomials[n][0] = 1.0;
        for (std::size_t k = 1; k <= n; k++)
            binomials[n][k] = binomials[n - 1][k - 1] + (k < n ? binomials[n - 1][k] : 0.0);
    }
    return binomials;
}

constexpr Binomials kBinomials = MakeBinomials();

// A polynomial on a piece of a path by its Bernstein coefficients: it has no more roots there than
// they change signs.
struct Bernstein {
    int32 degree;
    double begin;
    double length;
    Coefficients at;

    [[nodiscard]] int32 SignChanges() const {
        int32 changes = 0;
        for (std::size_t i = 1; i <= static_cast<std::size_t>(degree); i++)
            changes += (at[i - 1] > 0.0) != (at[i] > 0.0);
        return changes;
    }
    // Keeps the first half and returns the second.
    Bernstein Split() {
        Bernstein second{degree, begin + length / 2, length / 2, {}};
        const auto n = static_cast<std::size_t>(degree);
        Coefficients row = at;
        for (std::size_t i = 0; i <= n; i++) {
            at[i] = row[0];
            second.at[n - i] = row[n - i];
            for (std::size_t k = 0; k < n - i; k++)
                row[k] = 0.5 * (row[k] + row[k + 1]);
        }
        length /= 2;
        return second;
    }
};

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
    Coefficients powers{};
    for (const auto& axis : at_)
        for (int32 i = 0; i < terms_; i++)
            for (int32 k = 0; k < terms_; k++)
                powers[static_cast<std::size_t>(i + k)] += axis[i] * axis[k];
    powers[0] -= reach * reach;
    Bernstein whole{degree, 0.0, 1.0, {}};
    const Coefficients& all = kBinomials[static_cast<std::size_t>(degree)];
    for (std::size_t i = 0; i <= static_cast<std::size_t>(degree); i++)
        for (std::size_t k = 0; k <= i; k++)
            whole.at[i] += kBinomials[i][k] / all[k] * powers[k];
    // What is left to search, the first piece last.
    constexpr std::size_t kMaxPieces = 50;
    std::array<Bernstein, kMaxPieces + 1> pieces;
    std::size_t count = 1;
    pieces[0] = whole;
    while (count > 0) {
        Bernstein& piece = pieces[--count];
        const double end = piece.begin + piece.length;
        const int32 changes = piece.SignChanges();
        if (piece.at[0] <= 0.0) return piece.begin;
        if (changes == 0) continue;
        if (changes == 1) return RootBetween(piece.begin, end, reach);
        // Paths that only just touch, if at all.
        if (count + 1 >= kMaxPieces || piece.length < 1e-14) continue;
        const Bernstein first = piece;
        pieces[count + 1] = first;
        pieces[count] = pieces[count + 1].Split();
        count += 2;
    }
    return -1.0;
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
