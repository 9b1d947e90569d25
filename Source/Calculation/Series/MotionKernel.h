// What is done with complete series: the step's length, places and velocities, and how much paths
// bend.
#pragma once

#include "Calculation/KernelVectors.h"
#include "Calculation/Series/SeriesInstances.h"
#include "Calculation/Series/SeriesSums.h"

namespace {

template <int32 kLanes>
class SeriesRows {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    using Triples = Triple<Real>;

public:
    // Of the part of a vector that begins at `lane`.
    ORVEK_INLINE SeriesRows(const SeriesArrays& arrays, int32 vector, int32 lane)
        : rows_(arrays.Vector(vector) + lane) {}

    ORVEK_INLINE Real At(int32 order, int32 axis) const {
        return V::Load(rows_ + (3 * order + axis) * kSlots);
    }
    ORVEK_INLINE Triples At(int32 order) const {
        return {At(order, 0), At(order, 1), At(order, 2)};
    }
    ORVEK_INLINE Real Square(int32 order) const {
        const Triples x = At(order);
        return x.Dot(x);
    }

private:
    const double* const rows_;
};

template <int32 kLanes, class Visit>
ORVEK_INLINE void ForEachPart(int32 vectors, Visit visit) {
    for (int32 vector = 0; vector < vectors; vector++)
        for (int32 lane = 0; lane < kSlots; lane += kLanes)
            visit(vector, lane);
}

template <int32 kLanes>
ORVEK_INLINE double GreatestLane(typename Vector<kLanes>::Real value) {
    double greatest = value[0];
    for (int32 lane = 1; lane < kLanes; lane++)
        greatest = value[lane] > greatest ? value[lane] : greatest;
    return greatest;
}

template <int32 kLanes>
ORVEK_INLINE bool AllZero(typename Vector<kLanes>::Real value) {
    for (int32 lane = 0; lane < kLanes; lane++)
        if (!(value[lane] == 0)) return false;
    return true;
}

template <int32 kLanes>
SeriesEnd EndOfSeries(const SeriesArrays& arrays) {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    Real last{}, lastButOne{}, finite{}, pulled{};
    ForEachPart<kLanes>(arrays.vectors, [&](int32 vector, int32 lane) {
        const SeriesRows<kLanes> x(arrays, vector, lane);
        Real least = x.Square(2) + x.Square(3);
        pulled = V::Max(pulled, least);
        least = least == 0 ? V::Fill(1e300) : least;
        const Real a = x.Square(arrays.order + 1) / least;
        const Real b = x.Square(arrays.order) / least;
        last = V::Max(last, a);
        lastButOne = V::Max(lastButOne, b);
        finite += (least + a + b) * 0.0;
    });
    return {GreatestLane<kLanes>(last), GreatestLane<kLanes>(lastButOne), AllZero<kLanes>(finite),
            AllZero<kLanes>(pulled)};
}

template <int32 kLanes>
double Activity(const SeriesArrays& arrays, int32 k, int32 vector, double theta) {
    using V = Vector<kLanes>;
    const double theta2 = theta * theta;
    double power = 1.0;  // theta^(k - 2), squared
    for (int32 i = 2; i < k; i++)
        power *= theta2;
    double greatest = 0.0;
    for (int32 lane = 0; lane < kSlots; lane += kLanes) {
        const SeriesRows<kLanes> x(arrays, vector, lane);
        const auto least = x.Square(2) + x.Square(3) * theta2;
        const auto term = V::Max(x.Square(k), x.Square(k + 1) * theta2) * power;
        const double part = GreatestLane<kLanes>(least == 0 ? V::Fill(0) : term / least);
        if (!(part <= greatest)) greatest = part;
    }
    return greatest;
}

template <int32 kLanes>
bool EvaluateSeries(const SeriesArrays& arrays, double theta, double* high, double* low) {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    const int32 last = arrays.order + 1;
    Real finite{};
    ForEachPart<kLanes>(arrays.vectors, [&](int32 vector, int32 lane) {
        const SeriesRows<kLanes> x(arrays, vector, lane);
        for (int32 axis = 0; axis < 3; axis++) {
            const Real lows[2] = {x.At(last + 1, axis), x.At(last + 2, axis)};
            const auto motion = SumSeries<Real>([&](int32 k) { return x.At(k, axis); }, lows, last,
                                                theta, arrays.scale);
            const int64 place = (int64{6} * vector + axis) * kSlots + lane;
            const int64 velocity = place + 3 * kSlots;
            V::Store(high + place, motion.place.high);
            V::Store(high + velocity, motion.velocity.high);
            if (low != nullptr) {
                V::Store(low + place, motion.place.low);
                V::Store(low + velocity, motion.velocity.low);
            }
            finite += (motion.place.high + motion.velocity.high) * 0.0;
        }
    });
    return AllZero<kLanes>(finite);
}

// Rounding of what follows costs less than what is added.
template <int32 kLanes>
void ReachOfSeries(const SeriesArrays& arrays, double theta, double* reach) {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    constexpr double kRounding = 1e-15;
    ForEachPart<kLanes>(arrays.vectors, [&](int32 vector, int32 lane) {
        const SeriesRows<kLanes> x(arrays, vector, lane);
        Real square{}, places{};
        for (int32 axis = 0; axis < 3; axis++) {
            Real sum = V::Size(x.At(arrays.order + 1, axis));
            for (int32 k = arrays.order; k > 0; k--)
                sum = sum * theta + V::Size(x.At(k, axis));
            square += sum * sum;
            places += V::Size(x.At(0, axis));
        }
        V::Store(reach + vector * kSlots + lane,
                 V::Sqrt(square) * (theta * (1 + kRounding)) + places * kRounding);
    });
}

// How much nearer a part's bodies are than they may come, squared; negative where they stay apart.
template <int32 kLanes>
ORVEK_INLINE typename Vector<kLanes>::Real Nearness(
    const SeriesArrays& arrays, int32 vector, int32 lane, const double* reach, double ownReach,
    const Triple<typename Vector<kLanes>::Real>& place) {
    using V = Vector<kLanes>;
    const auto d = SeriesRows<kLanes>(arrays, vector, lane).At(0) - place;
    const auto both = V::Load(reach + vector * kSlots + lane) + ownReach;
    return both > 0 ? both * both - d.Dot(d) : V::Fill(-1);
}

template <int32 kLanes>
bool IsNear(const SeriesArrays& arrays, const double* reach, int32 slot) {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    const double* const own = arrays.Vector(slot / kSlots) + slot % kSlots;
    const Triple<Real> place = {V::Fill(own[0]), V::Fill(own[kSlots]), V::Fill(own[2 * kSlots])};
    Real most = V::Fill(-1);
    for (int32 lane = 0; lane < kSlots; lane += kLanes) {
        const Real part = Nearness<kLanes>(arrays, slot / kSlots, lane, reach, reach[slot], place);
        most = V::Max(most, V::LaneNumbers() + lane > slot % kSlots ? part : V::Fill(-1));
    }
    for (int32 vector = slot / kSlots + 1; vector < arrays.vectors; vector++)
        for (int32 lane = 0; lane < kSlots; lane += kLanes)
            most = V::Max(most, Nearness<kLanes>(arrays, vector, lane, reach, reach[slot], place));
    return GreatestLane<kLanes>(most) >= 0;
}

// Later orders change directions by little within a step.
template <int32 kLanes>
double Bend(const SeriesArrays& arrays, double theta) {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    using Triples = Triple<Real>;
    constexpr int32 kQuarters = 4;
    constexpr int32 kLast = 7;
    Real greatest{};
    ForEachPart<kLanes>(arrays.vectors, [&](int32 vector, int32 lane) {
        const SeriesRows<kLanes> x(arrays, vector, lane);
        const Triples start = x.At(1);
        Triples before = start;
        for (int32 quarter = 1; quarter <= kQuarters; quarter++) {
            const double at = theta * quarter * (1.0 / kQuarters);
            Triples sum = x.At(kLast) * V::Fill(kLast);
            for (int32 k = kLast - 1; k >= 2; k--)
                sum = sum * V::Fill(at) + x.At(k) * V::Fill(k);
            const Triples now = start + sum * V::Fill(at);
            const Real dot = before.Dot(now);
            const Real lengths = before.Dot(before) * now.Dot(now);
            // Of two velocities |a x b|^2 = |a|^2 |b|^2 - (a b)^2; by differences, which keep small
            // angles exact.
            const Triples cross = {before.y * now.z - before.z * now.y,
                                   before.z * now.x - before.x * now.z,
                                   before.x * now.y - before.y * now.x};
            const Real tangent = cross.Dot(cross) / (dot * dot);
            const Real bend = dot > 0 ? tangent : V::Fill(__builtin_inf());
            greatest = V::Max(greatest, lengths == 0 ? Real{} : bend);
            before = now;
        }
    });
    return GreatestLane<kLanes>(greatest);
}

}  // namespace
