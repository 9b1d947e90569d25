#include "Calculation/ForcePair.h"

#include <algorithm>
#include <cmath>

#include "Model/Systems/ThreeVector.h"

namespace {

// The later body, seen from the earlier one.
template <class Array>
ThreeVector Apart(Array* const (&of)[3]) {
    return {of[0][1] - of[0][0], of[1][1] - of[1][0], of[2][1] - of[2][0]};
}

// Sums begin at zero, which is never negative.
void Put(const ThreeVector& value, double* const (&to)[3], int32 body) {
    to[0][body] = 0.0 + value.x;
    to[1][body] = 0.0 + value.y;
    to[2][body] = 0.0 + value.z;
}

// What the later body does to the earlier one, if it has mass, and the other way round.
struct Effect {
    const bool isMutual;
    const double pullOfLater;
    const double pullOfEarlier;

    void Set(const ThreeVector& seen, double* const (&to)[3]) const {
        Put(isMutual ? seen * pullOfLater : ThreeVector(), to, 0);
        Put(-seen * pullOfEarlier, to, 1);
    }
    void Add(const ThreeVector& seen, double* const (&to)[3]) const {
        const ThreeVector first = isMutual ? seen * pullOfLater : ThreeVector();
        const ThreeVector second = -seen * pullOfEarlier;
        to[0][0] += first.x, to[1][0] += first.y, to[2][0] += first.z;
        to[0][1] += second.x, to[1][1] += second.y, to[2][1] += second.z;
    }
};

}  // namespace

bool EvaluatePair(const ForceArrays& arrays, int32 order, double* rate) {
    const ThreeVector d = Apart(arrays.position);
    const ThreeVector w = Apart(arrays.velocity);
    const double r2 = Dot(d, d);
    const double reach = arrays.radius[0] + arrays.radius[1];
    if (!(r2 > reach * reach)) return false;
    const double q = 1.0 / std::sqrt(r2);
    const double q2 = q * q;
    const double q3 = q2 * q;
    const double earlier = arrays.gm[0];
    const bool isMutual = arrays.massive == 2;
    const double later = isMutual ? arrays.gm[1] : 0.0;
    const double w2 = Dot(w, w);
    const double found = std::max(w2 * q2, (earlier + later) * q3);
    if (!std::isfinite(w2 * q2) || !std::isfinite(found)) return false;
    *rate = found;
    const Effect effect{isMutual, later * q3, earlier * q3};
    effect.Set(d, arrays.acceleration);
    if (order < 3) return true;
    const double dw = Dot(d, w);
    const double e = 3.0 * dw * q2;
    effect.Set(w - d * e, arrays.jerk);
    if (order < 4) return true;
    effect.Set(d * ((5.0 * dw * e - 3.0 * w2) * q2) - w * (2.0 * e), arrays.snap);
    const ThreeVector da = Apart(arrays.acceleration);
    effect.Add(da - d * (3.0 * Dot(d, da) * q2), arrays.snap);
    return true;
}
