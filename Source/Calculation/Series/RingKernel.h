// The series of up to 16 massive bodies, all of whom stand in one or two vectors, which are turned
// round against themselves. Where a vector of the machine holds the ring's first half or all of it
// that is one instruction; elsewhere numbers are written twice in a row and read from where the
// turn begins.
#pragma once

#include "Calculation/Series/PairRecurrence.h"
#include "Calculation/Series/SeriesInstances.h"

namespace {

// One number of each body, turned in registers.
template <int32 kLanes, int32 kParts>
class Wheel {
    using V = Vector<kLanes>;
    using Real = typename V::Real;

public:
    ORVEK_INLINE explicit Wheel(int32) {}
    ORVEK_INLINE void Set(int32 part, Real value) { parts_[part] = value; }
    ORVEK_INLINE Real At(int32 part) const { return parts_[part]; }
    ORVEK_INLINE Real Turned(int32 part, const int64* from, int32) const {
        typename V::Integer lanes;
        __builtin_memcpy(&lanes, from + part * kLanes, sizeof lanes);
        if constexpr (kParts == 1)
            return V::Shuffle(parts_[0], lanes);
        else
            return V::Shuffle(parts_[0], parts_[1], lanes);
    }

private:
    Real parts_[kParts];
};

// The same in memory, for as many parts as there are.
template <int32 kLanes>
class Wheel<kLanes, 0> {
    using V = Vector<kLanes>;
    using Real = typename V::Real;

public:
    ORVEK_INLINE explicit Wheel(int32 bodies) : bodies_(bodies) {}
    ORVEK_INLINE void Set(int32 part, Real value) {
        V::Store(numbers_ + part * kLanes, value);
        V::Store(numbers_ + bodies_ + part * kLanes, value);
    }
    ORVEK_INLINE Real At(int32 part) const { return V::Load(numbers_ + part * kLanes); }
    ORVEK_INLINE Real Turned(int32 part, const int64*, int32 turn) const {
        return V::Load(numbers_ + turn + part * kLanes);
    }

private:
    const int32 bodies_;
    double numbers_[3 * kMaxInRing];
};

// kParts: the vectors that hold the ring; 0: that is known at run time only.
template <int32 kLanes, int32 kParts>
class Ring {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    using Triples = Triple<Real>;
    static constexpr int32 kMaxParts = kParts > 0 ? kParts : kMaxInRing / kLanes;

    // What a pair keeps: differences of all orders, then powers.
    struct StoredDifferences {
        const double* rows;
        const Triples& first;
        const Triples& second;
        int32 order;

        ORVEK_INLINE Triples At(int32 m) const {
            if (m == order) return first;
            if (m == order + 1) return second;
            const double* const row = rows + m * 3 * kLanes;
            return {V::Load(row), V::Load(row + kLanes), V::Load(row + 2 * kLanes)};
        }
    };

    struct Wheels {
        Wheel<kLanes, kParts> x, y, z;

        ORVEK_INLINE explicit Wheels(int32 bodies) : x(bodies), y(bodies), z(bodies) {}
        ORVEK_INLINE void Set(int32 part, const Triples& value) {
            x.Set(part, value.x), y.Set(part, value.y), z.Set(part, value.z);
        }
        ORVEK_INLINE Triples Turned(int32 part, const int64* from, int32 turn) const {
            return {x.Turned(part, from, turn), y.Turned(part, from, turn),
                    z.Turned(part, from, turn)};
        }
        ORVEK_INLINE Triples Difference(int32 part, const int64* from, int32 turn) const {
            return Turned(part, from, turn) - Triples{x.At(part), y.At(part), z.At(part)};
        }
    };

public:
    ORVEK_INLINE Ring(const SeriesArrays& arrays, const RingArrays& ring)
        : arrays_(arrays), ring_(ring) {}

    ORVEK_INLINE int32 CountParts() const {
        return kParts > 0 ? kParts : (arrays_.massive + kLanes - 1) / kLanes;
    }

    template <int32 kOrder>
    ORVEK_INLINE void Pass() const {
        Wheels first(arrays_.massive), second(arrays_.massive);
        Load(kOrder, &first);
        Load(kOrder + 1, &second);
        Wheels lowFirst(arrays_.massive), lowSecond(arrays_.massive);
        if constexpr (kOrder == 0) {
            Load(arrays_.order + 2, &lowFirst);
            Load(arrays_.order + 3, &lowSecond);
        }
        TwoOrders<Triples> sums[kMaxParts] = {};
        double* pair = ring_.pairs;
        const int64 pairStride = int64{5 * kLanes} * arrays_.order;
        for (int32 round = 0; round < ring_.rounds; round++) {
            const int64* const met = ring_.met[round];
            const int64* const meeting = ring_.meeting[round];
            Wheels back(arrays_.massive), backSecond(arrays_.massive);
            for (int32 part = 0; part < CountParts(); part++, pair += pairStride) {
                Triples d = first.Difference(part, met, round + 1);
                Triples e = second.Difference(part, met, round + 1);
                if constexpr (kOrder == 0) {
                    d += lowFirst.Difference(part, met, round + 1);
                    e += lowSecond.Difference(part, met, round + 1);
                }
                const auto f = Meet<kOrder>(pair, d, e);
                const Real pullOfMet = V::Load(ring_.pullOfMet[round] + part * kLanes);
                const Real pullOfMeeting = V::Load(ring_.pullOfMeeting[round] + part * kLanes);
                sums[part].first += f.first * pullOfMet;
                sums[part].second += f.second * pullOfMet;
                back.Set(part, f.first * pullOfMeeting);
                backSecond.Set(part, f.second * pullOfMeeting);
            }
            const int32 turn = arrays_.massive - round - 1;
            for (int32 part = 0; part < CountParts(); part++) {
                sums[part].first -= back.Turned(part, meeting, turn);
                sums[part].second -= backSecond.Turned(part, meeting, turn);
            }
        }
        for (int32 part = 0; part < CountParts(); part++) {
            Store(kOrder + 2, part, sums[part].first, (kOrder + 1) * (kOrder + 2));
            Store(kOrder + 3, part, sums[part].second, (kOrder + 2) * (kOrder + 3));
        }
    }

private:
    template <int32 kOrder>
    ORVEK_INLINE TwoOrders<Triples> Meet(double* pair, const Triples& d, const Triples& e) const {
        double* const rows = pair + kOrder * 3 * kLanes;
        StoreTriples(rows, d);
        StoreTriples(rows + 3 * kLanes, e);
        StoredPowers<V> powers{pair + arrays_.order * 3 * kLanes, 4 * kLanes, kLanes};
        return NextOrders<V, kOrder>(StoredDifferences{pair, d, e, kOrder}, powers);
    }

    ORVEK_INLINE static void StoreTriples(double* rows, const Triples& value) {
        V::Store(rows, value.x);
        V::Store(rows + kLanes, value.y);
        V::Store(rows + 2 * kLanes, value.z);
    }

    ORVEK_INLINE double* Rows(int32 order, int32 part) const {
        return arrays_.Vector(part * kLanes / kSlots) + order * 3 * kSlots + part * kLanes % kSlots;
    }
    ORVEK_INLINE void Load(int32 order, Wheels* wheels) const {
        for (int32 part = 0; part < CountParts(); part++) {
            const double* const rows = Rows(order, part);
            wheels->Set(part, {V::Load(rows), V::Load(rows + kSlots), V::Load(rows + 2 * kSlots)});
        }
    }
    ORVEK_INLINE void Store(int32 order, int32 part, const Triples& value, int32 divisor) const {
        double* const rows = Rows(order, part);
        const double by = divisor;
        V::Store(rows, value.x / by);
        V::Store(rows + kSlots, value.y / by);
        V::Store(rows + 2 * kSlots, value.z / by);
    }

    const SeriesArrays& arrays_;
    const RingArrays& ring_;
};

template <int32 kLanes, int32 kParts, int32 kOrder>
[[gnu::noinline]] void RingPass(const SeriesArrays& arrays, const RingArrays& ring) {
    Ring<kLanes, kParts>(arrays, ring).template Pass<kOrder>();
}

template <int32 kLanes, int32 kParts, int32 kOrder = 0>
ORVEK_INLINE void RingPasses(const SeriesArrays& arrays, const RingArrays& ring) {
    if constexpr (kOrder < kMaxSeriesOrder) {
        RingPass<kLanes, kParts, kOrder>(arrays, ring);
        if (kOrder + 2 < arrays.order) RingPasses<kLanes, kParts, kOrder + 2>(arrays, ring);
    }
}

template <int32 kLanes>
void RingSeries(const SeriesArrays& arrays, const RingArrays& ring) {
    if constexpr (kLanes < 8) {
        RingPasses<kLanes, 0>(arrays, ring);
    } else {
        // Divisions of narrow vectors are quicker.
        if (arrays.massive <= 4)
            RingPasses<4, 1>(arrays, ring);
        else if (arrays.massive <= 8)
            RingPasses<8, 1>(arrays, ring);
        else
            RingPasses<8, 2>(arrays, ring);
    }
}

}  // namespace
