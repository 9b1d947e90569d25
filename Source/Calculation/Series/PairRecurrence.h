// The recurrences of one vector of pairs, two orders a pass. With d the difference of the places of
// two bodies, s = |d|^2 and q = s^(-3/2), each a series in time, the pair's part of an acceleration
// is f = d q, and
//     s_k = sum of d_m d_(k-m),   q_k = sum of (3 k - j) s_(k-j) q_j / (-2 k s_0), 0 <= j < k,
//     f_k = sum of q_m d_(k-m).
// Coefficients are whole numbers, and divisions stay divisions: a constant that is rounded errs to
// the same side in every step, and the error of a long run would grow with time itself.
#pragma once

#include "Calculation/KernelVectors.h"

namespace {

// Of a vector of pairs: order k, and order k + 1.
template <class Real>
struct TwoOrders {
    Real first, second;
};

template <class Real>
ORVEK_INLINE Triple<Real> Products(const Triple<Real>& a, const Triple<Real>& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}

// `Differences` gives d.At(0) ... d.At(kOrder + 1), `Powers` keeps s and q from pass to pass.
template <class V, int32 kOrder, class Differences>
ORVEK_INLINE TwoOrders<typename V::Real> Squares(const Differences& d) {
    using Triples = Triple<typename V::Real>;
    if constexpr (kOrder == 0) {
        const auto half = d.At(0).Dot(d.At(1));
        return {d.At(0).Dot(d.At(0)), half + half};
    } else {
        Triples first = Products(d.At(kOrder), d.At(0));
        Triples second = Products(d.At(kOrder + 1), d.At(0)) + Products(d.At(kOrder), d.At(1));
#pragma GCC unroll 64
        for (int32 m = 1; m < kOrder / 2; m++) {
            first += Products(d.At(m), d.At(kOrder - m));
            second += Products(d.At(m + 1), d.At(kOrder - m));
        }
        const Triples middle = d.At(kOrder / 2);
        first = first + first + Products(middle, middle);
        const auto half = second.x + second.y + second.z;
        return {first.x + first.y + first.z, half + half};
    }
}

template <class V, int32 kOrder, class Powers>
ORVEK_INLINE TwoOrders<typename V::Real> PowersOf(const TwoOrders<typename V::Real>& s,
                                                  const Powers& powers) {
    using Real = typename V::Real;
    if constexpr (kOrder == 0) {
        const Real inverse = 1.0 / s.first;
        const Real q = inverse / V::Sqrt(s.first);
        return {q, (-1.5 * s.second) * q * inverse};
    } else {
        // Even and odd terms apart: two short chains of additions instead of a long one.
        TwoOrders<Real> even{}, odd{};
        Real higher = s.second;
        Real lower = s.first;
#pragma GCC unroll 64
        for (int32 j = 0; j < kOrder; j++) {
            const Real q = powers.Q(j);
            const Real first = (static_cast<double>(3 * kOrder - j) * q) * lower;
            const Real second = (static_cast<double>(3 * (kOrder + 1) - j) * q) * higher;
            TwoOrders<Real>& sums = j % 2 == 0 ? even : odd;
            sums = j < 2 ? TwoOrders<Real>{first, second}
                         : TwoOrders<Real>{sums.first + first, sums.second + second};
            higher = lower;
            lower = powers.S(kOrder - j - 1);
        }
        const Real s0 = powers.S(0);
        const Real q = (even.first + odd.first) / (s0 * static_cast<double>(-2 * kOrder));
        const Real last = even.second + (static_cast<double>(2 * kOrder + 3) * higher) * q;
        return {q, (last + odd.second) / (s0 * static_cast<double>(-2 * (kOrder + 1)))};
    }
}

template <class V, int32 kOrder, class Differences, class Powers>
ORVEK_INLINE TwoOrders<Triple<typename V::Real>> Accelerations(const Differences& d,
                                                               const TwoOrders<typename V::Real>& q,
                                                               const Powers& powers) {
    using Triples = Triple<typename V::Real>;
    if constexpr (kOrder == 0) {
        return {d.At(0) * q.first, d.At(0) * q.second + d.At(1) * q.first};
    } else {
        // The new powers last, since they are known last.
        Triples first = d.At(kOrder) * powers.Q(0);
        Triples second = d.At(kOrder + 1) * powers.Q(0);
#pragma GCC unroll 64
        for (int32 m = 1; m < kOrder; m++) {
            second += d.At(kOrder + 1 - m) * powers.Q(m);
            first += d.At(kOrder - m) * powers.Q(m);
        }
        second += d.At(1) * q.first;
        first += d.At(0) * q.first;
        second += d.At(0) * q.second;
        return {first, second};
    }
}

template <class V, int32 kOrder, class Differences, class Powers>
ORVEK_INLINE TwoOrders<Triple<typename V::Real>> NextOrders(const Differences& d, Powers& powers) {
    const auto s = Squares<V, kOrder>(d);
    const auto q = PowersOf<V, kOrder>(s, powers);
    powers.template Keep<kOrder>(s, q);
    return Accelerations<V, kOrder>(d, q, powers);
}

// Differences that are formed anew in each pass.
template <class Real, int32 kOrder>
struct LocalDifferences {
    Triple<Real> orders[kOrder + 2];
    ORVEK_INLINE const Triple<Real>& At(int32 m) const { return orders[m]; }
};

// Powers in rows of memory: two orders to a band.
template <class V>
struct StoredPowers {
    double* rows;
    int64 band;  // numbers from one to the next
    int32 row;   // numbers in a row, of which a vector is read

    ORVEK_INLINE double* At(int32 m, int32 which) const {
        return rows + m / 2 * band + (m % 2 * 2 + which) * row;
    }
    ORVEK_INLINE typename V::Real S(int32 m) const { return V::Load(At(m, 0)); }
    ORVEK_INLINE typename V::Real Q(int32 m) const { return V::Load(At(m, 1)); }
    template <int32 kOrder>
    ORVEK_INLINE void Keep(const TwoOrders<typename V::Real>& s,
                           const TwoOrders<typename V::Real>& q) const {
        V::Store(At(kOrder, 0), s.first);
        V::Store(At(kOrder, 1), q.first);
        V::Store(At(kOrder + 1, 0), s.second);
        V::Store(At(kOrder + 1, 1), q.second);
    }
};

// Powers that are formed anew in each pass.
template <class V, int32 kOrder>
struct LocalPowers {
    typename V::Real s[kOrder + 2];
    typename V::Real q[kOrder + 2];

    ORVEK_INLINE typename V::Real S(int32 m) const { return s[m]; }
    ORVEK_INLINE typename V::Real Q(int32 m) const { return q[m]; }
    template <int32 kOf>
    ORVEK_INLINE void Keep(const TwoOrders<typename V::Real>& square,
                           const TwoOrders<typename V::Real>& power) {
        s[kOf] = square.first;
        s[kOf + 1] = square.second;
        q[kOf] = power.first;
        q[kOf + 1] = power.second;
    }
    // All below kOrder.
    template <int32 kOf = 0, class Differences>
    ORVEK_INLINE void Make(const Differences& d) {
        if constexpr (kOf < kOrder) {
            const auto squares = Squares<V, kOf>(d);
            Keep<kOf>(squares, PowersOf<V, kOf>(squares, *this));
            Make<kOf + 2>(d);
        }
    }
};

}  // namespace
