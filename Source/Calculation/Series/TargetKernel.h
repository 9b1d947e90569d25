// The series of massless bodies: a vector of them goes through all orders while the powers of its
// pairs stay in the cache.
#pragma once

#include "Calculation/Series/PairRecurrence.h"
#include "Calculation/Series/SeriesInstances.h"

namespace {

template <int32 kLanes>
class MasslessTargets {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    using Triples = Triple<Real>;

public:
    ORVEK_INLINE MasslessTargets(const SeriesArrays& arrays, double* rows, double* scratch)
        : arrays_(arrays), rows_(rows), scratch_(scratch) {}

    template <int32 kOrder>
    ORVEK_INLINE void Pass() const {
        TwoOrders<Triples> sums{};
        double* powers = scratch_;
#pragma GCC unroll 1
        for (int32 slot = 0; slot < arrays_.massive; slot++, powers += 2 * kLanes * arrays_.order) {
            const int32 vector = slot / kSlots;
            const int32 lane = slot % kSlots;
            const double* const source = arrays_.Vector(vector) + lane;
            LocalDifferences<Real, kOrder> d;
            for (int32 order = 0; order < kOrder + 2; order++)
                d.orders[order] = Difference(source, order);
            for (int32 order = 0; order < 2; order++)
                d.orders[order] += Difference(source, arrays_.order + 2 + order);
            StoredPowers<V> stored{powers, 4 * kLanes, kLanes};
            const auto f = NextOrders<V, kOrder>(d, stored);
            const Real pull = V::Fill(arrays_.pull[slot]);
            sums.first += f.first * pull;
            sums.second += f.second * pull;
        }
        Store(kOrder + 2, sums.first, (kOrder + 1) * (kOrder + 2));
        Store(kOrder + 3, sums.second, (kOrder + 2) * (kOrder + 3));
    }

private:
    ORVEK_INLINE Triples Difference(const double* source, int32 order) const {
        source += order * 3 * kSlots;
        const double* const own = rows_ + order * 3 * kSlots;
        return {source[0] - V::Load(own), source[kSlots] - V::Load(own + kSlots),
                source[2 * kSlots] - V::Load(own + 2 * kSlots)};
    }
    ORVEK_INLINE void Store(int32 order, const Triples& value, int32 divisor) const {
        double* const own = rows_ + order * 3 * kSlots;
        const double by = divisor;
        V::Store(own, value.x / by);
        V::Store(own + kSlots, value.y / by);
        V::Store(own + 2 * kSlots, value.z / by);
    }

    const SeriesArrays& arrays_;
    double* const rows_;
    double* const scratch_;
};

template <int32 kLanes, int32 kOrder>
[[gnu::noinline]] void TargetPass(const SeriesArrays& arrays, double* rows, double* scratch) {
    MasslessTargets<kLanes>(arrays, rows, scratch).template Pass<kOrder>();
}

template <int32 kLanes, int32 kOrder = 0>
ORVEK_INLINE void TargetPasses(const SeriesArrays& arrays, double* rows, double* scratch) {
    if constexpr (kOrder < kMaxSeriesOrder) {
        TargetPass<kLanes, kOrder>(arrays, rows, scratch);
        if (kOrder + 2 < arrays.order) TargetPasses<kLanes, kOrder + 2>(arrays, rows, scratch);
    }
}

template <int32 kLanes>
void TargetSeries(const SeriesArrays& arrays, int32 vector, double* scratch) {
    for (int32 lane = 0; lane < kSlots; lane += kLanes)
        TargetPasses<kLanes>(arrays, arrays.Vector(vector) + lane, scratch);
}

}  // namespace
