// The series of more than 16 massive bodies: the pairs of two vectors A and B are the eight
// rotations of B against A, those of a vector with itself the first four, the last one by half.
#pragma once

#include "Calculation/Series/PairRecurrence.h"
#include "Calculation/Series/SeriesInstances.h"

namespace {

// Rows of eight numbers, rotated in registers.
template <int32 kLanes, int32 kRows>
class RotatedRows {
    using V = Vector<kLanes>;
    static_assert(kLanes == kSlots);

public:
    ORVEK_INLINE explicit RotatedRows(const double* rows) : rows_(rows) {}
    ORVEK_INLINE typename V::Real At(int32 row, int32 rotation, int32) const {
        return V::Shuffle(V::Load(rows_ + row * kSlots), (V::LaneNumbers() + rotation) & 7);
    }

private:
    const double* const rows_;
};

// Narrower machines copy them twice in a row.
template <int32 kLanes, int32 kRows>
requires(kLanes < kSlots) class RotatedRows<kLanes, kRows> {
    using V = Vector<kLanes>;

public:
    ORVEK_INLINE explicit RotatedRows(const double* rows) {
#pragma GCC unroll 1
        for (int32 row = 0; row < kRows; row++, rows += kSlots)
            for (int32 at = 0; at < kSlots; at += kLanes) {
                V::Store(copies_ + 2 * kSlots * row + at, V::Load(rows + at));
                V::Store(copies_ + 2 * kSlots * row + at + kSlots, V::Load(rows + at));
            }
    }
    ORVEK_INLINE typename V::Real At(int32 row, int32 rotation, int32 part) const {
        return V::Load(copies_ + 2 * kSlots * row + rotation + part * kLanes);
    }

private:
    double copies_[2 * kSlots * kRows];
};

template <int32 kLanes, int32 kOrder, bool kKeepsPowers>
class Tile {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    using Triples = Triple<Real>;
    using Pair = TwoOrders<Triples>;
    static constexpr int32 kParts = kSlots / kLanes;
    static constexpr int32 kRows = 3 * (kOrder + 2);

public:
    ORVEK_INLINE Tile(const SeriesArrays& arrays, const TileArrays& tiles, const SeriesTile& tile)
        : tiles_(tiles),
          isSelf_(tile.a == tile.b),
          rowsA_(arrays.Vector(tile.a)),
          lowA_(rowsA_ + (arrays.order + 2) * 3 * kSlots),
          pullA_(arrays.pull + tile.a * kSlots),
          rowsB_(arrays.Vector(tile.b)),
          lowB_(arrays.Vector(tile.b) + (arrays.order + 2) * 3 * kSlots),
          pullB_(arrays.pull + tile.b * kSlots),
          powers_(tiles.powers ? tiles.powers + tile.block * 4 * kSlots : nullptr) {}

    ORVEK_INLINE void AddTo(double* sumA, double* sumB) {
        const int32 end = isSelf_ ? kSlots / 2 : kSlots - 1;
        Pair here[kParts] = {};
        Pair there[kParts] = {};
#pragma GCC unroll 1
        for (int32 rotation = isSelf_ ? 1 : 0; rotation <= end; rotation++) {
            Pair reactions[kParts];
#pragma GCC unroll 1
            for (int32 part = 0; part < kParts; part++)
                reactions[part] = Meet(rotation, part, &here[part]);
            TurnBack(rotation, reactions, there);
            if constexpr (kKeepsPowers) powers_ += 4 * kSlots;
        }
        for (int32 part = 0; part < kParts; part++) {
            Add(sumA + part * kLanes, here[part]);
            Add(sumB + part * kLanes, there[part]);
        }
    }

private:
    // Adds what A's bodies get; returns what B's bodies lose, as A's lanes have it.
    ORVEK_INLINE Pair Meet(int32 rotation, int32 part, Pair* here) const {
        LocalDifferences<Real, kOrder> d;
        for (int32 order = 0; order < kOrder + 2; order++)
            d.orders[order] = Difference(rowsB_, rowsA_, order, rotation, part);
        for (int32 order = 0; order < 2; order++)
            d.orders[order] += Difference(lowB_, lowA_, order, rotation, part);
        Real pullOfMet = pullB_.At(0, rotation, part);
        Real pullOfMeeting = V::Load(pullA_ + part * kLanes);
        if (isSelf_ && rotation == kSlots / 2) {
            const auto isNew = V::LaneNumbers() < kSlots / 2 - part * kLanes;
            pullOfMet = isNew ? pullOfMet : Real{};
            pullOfMeeting = isNew ? pullOfMeeting : Real{};
        }
        const Pair f = Next(d, part);
        here->first += f.first * pullOfMet;
        here->second += f.second * pullOfMet;
        return {f.first * pullOfMeeting, f.second * pullOfMeeting};
    }

    ORVEK_INLINE Pair Next(const LocalDifferences<Real, kOrder>& d, int32 part) const {
        if constexpr (kKeepsPowers) {
            StoredPowers<V> powers{powers_ + part * kLanes, tiles_.powersStride, kSlots};
            return NextOrders<V, kOrder>(d, powers);
        } else {
            LocalPowers<V, kOrder> powers;
            powers.Make(d);
            return NextOrders<V, kOrder>(d, powers);
        }
    }

    template <class Rows>
    ORVEK_INLINE static Triples Difference(const Rows& met, const double* meeting, int32 order,
                                           int32 rotation, int32 part) {
        const double* const own = meeting + order * 3 * kSlots + part * kLanes;
        return {met.At(3 * order, rotation, part) - V::Load(own),
                met.At(3 * order + 1, rotation, part) - V::Load(own + kSlots),
                met.At(3 * order + 2, rotation, part) - V::Load(own + 2 * kSlots)};
    }

    ORVEK_INLINE static void TurnBack(int32 rotation, const Pair* reactions, Pair* there) {
        alignas(64) double rows[6 * kSlots];
        for (int32 part = 0; part < kParts; part++)
            Write(rows + part * kLanes, reactions[part]);
        const RotatedRows<kLanes, 6> turned(rows);
        const int32 back = (kSlots - rotation) % kSlots;
        for (int32 part = 0; part < kParts; part++) {
            there[part].first -=
                {turned.At(0, back, part), turned.At(1, back, part), turned.At(2, back, part)};
            there[part].second -=
                {turned.At(3, back, part), turned.At(4, back, part), turned.At(5, back, part)};
        }
    }

    ORVEK_INLINE static Pair Read(const double* rows) {
        return {
            {V::Load(rows), V::Load(rows + kSlots), V::Load(rows + 2 * kSlots)},
            {V::Load(rows + 3 * kSlots), V::Load(rows + 4 * kSlots), V::Load(rows + 5 * kSlots)}};
    }
    ORVEK_INLINE static void Write(double* rows, const Pair& pair) {
        V::Store(rows, pair.first.x);
        V::Store(rows + kSlots, pair.first.y);
        V::Store(rows + 2 * kSlots, pair.first.z);
        V::Store(rows + 3 * kSlots, pair.second.x);
        V::Store(rows + 4 * kSlots, pair.second.y);
        V::Store(rows + 5 * kSlots, pair.second.z);
    }
    ORVEK_INLINE static void Add(double* rows, const Pair& pair) {
        const Pair sum = Read(rows);
        Write(rows, {sum.first + pair.first, sum.second + pair.second});
    }

    const TileArrays& tiles_;
    const bool isSelf_;
    const double* const rowsA_;
    const double* const lowA_;
    const double* const pullA_;
    const RotatedRows<kLanes, kRows> rowsB_;
    const RotatedRows<kLanes, 6> lowB_;
    const RotatedRows<kLanes, 1> pullB_;
    double* powers_;
};

template <int32 kLanes, int32 kOrder, bool kKeepsPowers>
void TileGroup(const SeriesArrays& arrays, const TileArrays& tiles, int32 group, int32 first,
               int32 count) {
    const int64 rows = int64{6 * kSlots} * arrays.massiveVectors;
    double* const sums = tiles.sums + group * rows;
    for (int64 i = 0; first == 0 && i < rows; i++)
        sums[i] = 0.0;
    const int32 end = tiles.groups * (first + count);
    for (int32 t = tiles.groups * first + group; t < end && t < tiles.countTiles;
         t += tiles.groups) {
        const SeriesTile& tile = tiles.tiles[t];
        if (!tiles.active[tile.a] && !tiles.active[tile.b]) continue;
        Tile<kLanes, kOrder, kKeepsPowers>(arrays, tiles, tile)
            .AddTo(sums + tile.a * 6 * kSlots, sums + tile.b * 6 * kSlots);
    }
}

// The sums of groups are added in pairs, these in pairs and so on.
template <class V>
typename V::Real SumOfGroups(const double* row, int64 stride, int32 groups) {
    if (groups == 1) return V::Load(row);
    return SumOfGroups<V>(row, stride, groups / 2) +
           SumOfGroups<V>(row + groups / 2 * stride, stride, groups / 2);
}

template <int32 kLanes>
void SumGroups(const SeriesArrays& arrays, const TileArrays& tiles, int32 k, int32 vector) {
    using V = Vector<kLanes>;
    const int64 stride = int64{6 * kSlots} * arrays.massiveVectors;
    const double* const sums = tiles.sums + int64{6 * kSlots} * vector;
    double* const rows = arrays.Vector(vector) + (k + 2) * 3 * kSlots;
    const int32 bodies = arrays.massive - vector * kSlots;
    for (int32 row = 0; row < 6; row++) {
        const double divisor = row < 3 ? (k + 1) * (k + 2) : (k + 2) * (k + 3);
        for (int32 lane = 0; lane < kSlots; lane += kLanes) {
            const auto sum = SumOfGroups<V>(sums + row * kSlots + lane, stride, tiles.groups);
            // Slots without a body stay where they are.
            V::Store(rows + row * kSlots + lane,
                     V::LaneNumbers() < bodies - lane ? sum / divisor : typename V::Real{});
        }
    }
}

}  // namespace
