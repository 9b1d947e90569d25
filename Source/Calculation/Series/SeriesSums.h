// Sums of a body's series, one body at a time or a vector of them: `Real` is a double or a vector.
// Even and odd orders are summed apart, which takes half the time.
#pragma once

#include "Platform/Support/SupportDefs.h"

namespace {

// An unevaluated sum of two numbers.
template <class Real>
struct SplitSum {
    Real high, low;
};

template <class Real>
inline SplitSum<Real> AddSplit(Real high, Real low, Real addend) {
    const Real small = addend + low;
    const Real sum = high + small;
    const Real added = sum - high;
    return {sum, (high - (sum - added)) + (small - added)};
}

// Sums of x_k theta^(k - 2) and of k x_k theta^(k - 2), from k = 2 to `last`, which is odd. `x`
// gives x(k).
template <class Real>
struct SeriesTail {
    Real place, velocity;
};

template <class Real, class Terms>
inline SeriesTail<Real> SumTail(const Terms& x, int32 last, double theta) {
    const double theta2 = theta * theta;
    Real odd = x(last);
    Real even = x(last - 1);
    Real oddVelocity = odd * static_cast<double>(last);
    Real evenVelocity = even * static_cast<double>(last - 1);
    for (int32 k = last - 2; k > 2; k -= 2) {
        const Real nextOdd = x(k);
        const Real nextEven = x(k - 1);
        odd = odd * theta2 + nextOdd;
        even = even * theta2 + nextEven;
        oddVelocity = oddVelocity * theta2 + nextOdd * static_cast<double>(k);
        evenVelocity = evenVelocity * theta2 + nextEven * static_cast<double>(k - 1);
    }
    return {even + odd * theta, evenVelocity + oddVelocity * theta};
}

// Where a coordinate and its velocity are at `theta` scales: `low` gives what x(0) and x(1) lack.
template <class Real>
struct Motion {
    SplitSum<Real> place, velocity;
};

template <class Real, class Terms>
inline Motion<Real> SumSeries(const Terms& x, const Real (&low)[2], int32 last, double theta,
                              double scale) {
    const double inverse = 1.0 / scale;
    const SeriesTail<Real> tail = SumTail<Real>(x, last, theta);
    const Real moved = (tail.place * theta + x(1)) * theta + low[1] * theta;
    const Real turned = (tail.velocity * theta) * inverse;
    return {AddSplit<Real>(x(0), low[0], moved),
            AddSplit<Real>(x(1) * inverse, low[1] * inverse, turned)};
}

}  // namespace
