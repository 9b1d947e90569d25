// The force kernel, compiled once for each instruction set: only the ForceKernel*.cpp files include
// it. Everything here has internal linkage, so that no function compiled for a newer processor can
// stand in for its namesake in code that runs on all of them.
//
// The plain way to sum the forces is a walk over the pairs (i, j), i < j, i massive, i and j both
// descending, which adds each pair's effect to both bodies. It adds to every body k the effects of
// the other massive bodies in descending order of their index. The kernel therefore takes a vector
// of targets k and runs over the sources s descending, leaving out s = k: this gives the same sums
// bit for bit, because a pair's quantities only change sign, exactly, with the direction of
// looking. Nothing is shared between targets, so they may be split over vectors and threads at
// will.
//
// With d = r(s) - r(k), w = v(s) - v(k), D = a(s) - a(k), q = 1/|d| and e = 3 (d.w) q2, from
// derivatives of d/|d|3 by time:
//     a += m q3 d,   jerk += m q3 (w - e d),
//     snap += m q3 ((5 (d.w) e - 3 w2) q2 d - 2 e w)   (first pass)
//           + m q3 (D - 3 (d.D) q2 d)                  (second pass)
#pragma once

#include "Calculation/ForceInstances.h"
#include "Calculation/KernelVectors.h"
#include "Platform/Support/SupportDefs.h"

namespace {

// One vector of targets, beginning with body `begin`.
template <int32 kLanes>
class Targets {
    using V = Vector<kLanes>;
    using Real = typename V::Real;
    using Integer = typename V::Integer;
    using Triples = Triple<Real>;

public:
    ORVEK_INLINE Targets(const ForceArrays& arrays, int32 begin) : arrays_(arrays), begin_(begin) {}

    template <int32 kOrder, bool kKeeps>
    ORVEK_INLINE FirstPassResult FirstPass() {
        // The lower orders move one body after the other.
        constexpr auto kLoad = kOrder < 4 ? V::LoadEach : V::Load;
        position_ = Load(arrays_.position, kLoad);
        velocity_ = Load(arrays_.velocity, kLoad);
        radius_ = V::Load(arrays_.radius + begin_);
        gm_ = V::Load(arrays_.gm + begin_);
        gm_ = V::LaneNumbers() < Integer{} + (arrays_.massive - begin_) ? gm_ : Real{};
        rate_ = Real{};
        apart_ = V::Fill(1);
        first_ = jerk_ = snap_ = Triples{};
        ForEachSource([this](int32 source, auto self) {
            this->template AddFirst<kOrder, kKeeps>(source, self);
        });
        Store(arrays_.acceleration, first_);
        if constexpr (kOrder >= 3) Store(arrays_.jerk, jerk_);
        if constexpr (kOrder >= 4) Store(arrays_.snap, snap_);
        return Result();
    }

    template <bool kKept>
    ORVEK_INLINE void SecondPass() {
        position_ = Load(arrays_.position);
        first_ = Load(arrays_.acceleration);
        snap_ = Load(arrays_.snap);
        ForEachSource(
            [this](int32 source, auto self) { this->template AddSecond<kKept>(source, self); });
        Store(arrays_.snap, snap_);
    }

private:
    // In place of the mask of the lane that is its own source, where no lane is.
    struct NoSelf {};

    template <class Add>
    ORVEK_INLINE void ForEachSource(Add add) {
        int32 source = arrays_.massive - 1;
        for (; source >= begin_ + kLanes; source--)
            add(source, NoSelf{});
        for (; source >= begin_; source--)
            add(source, V::LaneNumbers() == Integer{} + (source - begin_));
        for (; source >= 0; source--)
            add(source, NoSelf{});
    }

    template <int32 kOrder, bool kKeeps, class Self>
    ORVEK_INLINE void AddFirst(int32 source, Self self) {
        const Triples d = Difference(arrays_.position, source, position_, self);
        const Triples w = Difference(arrays_.velocity, source, velocity_, self);
        const Real r2 = SquaredDistance(d, self);
        const Real reach = Unless(self, radius_ + arrays_.radius[source], Real{});
        // Unordered counts as touching.
        apart_ = r2 > reach * reach ? apart_ : Real{};
        const Real q = 1.0 / V::Sqrt(r2);
        const Real q2 = q * q;
        const Real q3 = q2 * q;
        const double gm = arrays_.gm[source];
        const Real pull = gm * q3;
        if constexpr (kKeeps) {
            V::Store(Kept(source), q2);
            V::Store(Kept(source) + kLanes, pull);
        }
        first_ += d * pull;
        const Real w2 = w.Dot(w);
        rate_ = V::Max(rate_, w2 * q2);
        rate_ = V::Max(rate_, (gm + gm_) * q3);
        if constexpr (kOrder >= 3) {
            const Real dw = d.Dot(w);
            const Real e = 3.0 * dw * q2;
            jerk_ += (w - d * e) * pull;
            if constexpr (kOrder >= 4)
                snap_ += (d * ((5.0 * dw * e - 3.0 * w2) * q2) - w * (2.0 * e)) * pull;
        }
    }

    template <bool kKept, class Self>
    ORVEK_INLINE void AddSecond(int32 source, Self self) {
        const Triples d = Difference(arrays_.position, source, position_, self);
        const Triples da = Difference(arrays_.acceleration, source, first_, self);
        Real q2, pull;
        if constexpr (kKept) {
            q2 = V::Load(Kept(source));
            pull = V::Load(Kept(source) + kLanes);
        } else {
            const Real q = 1.0 / V::Sqrt(SquaredDistance(d, self));
            q2 = q * q;
            pull = arrays_.gm[source] * (q2 * q);
        }
        snap_ += (da - d * (3.0 * d.Dot(da) * q2)) * pull;
    }

    // Two vectors for each source, behind those of the targets before.
    ORVEK_INLINE double* Kept(int32 source) const {
        return arrays_.kept + 2 * (static_cast<int64>(begin_ - arrays_.keptFrom) * arrays_.massive +
                                   static_cast<int64>(source) * kLanes);
    }

    // The value, but something else in the lane that is its own source.
    ORVEK_INLINE static Real Unless(NoSelf, Real value, Real) { return value; }
    ORVEK_INLINE static Real Unless(Integer self, Real value, Real instead) {
        return self ? instead : value;
    }

    // Zero towards itself, even for infinities, whose difference is no number.
    template <class Array, class Self>
    ORVEK_INLINE static Triples Difference(Array* const (&from)[3], int32 source, const Triples& to,
                                           Self self) {
        return {Unless(self, from[0][source] - to.x, Real{}),
                Unless(self, from[1][source] - to.y, Real{}),
                Unless(self, from[2][source] - to.z, Real{})};
    }

    // Infinite towards itself, so a body neither touches nor pulls itself.
    template <class Self>
    ORVEK_INLINE static Real SquaredDistance(const Triples& d, Self self) {
        return Unless(self, d.Dot(d), V::Fill(__builtin_inf()));
    }

    template <class Array>
    ORVEK_INLINE Triples Load(Array* const (&from)[3],
                              Real (*load)(const double*) = V::Load) const {
        return {load(from[0] + begin_), load(from[1] + begin_), load(from[2] + begin_)};
    }
    ORVEK_INLINE void Store(double* const (&to)[3], const Triples& value) const {
        V::Store(to[0] + begin_, value.x);
        V::Store(to[1] + begin_, value.y);
        V::Store(to[2] + begin_, value.z);
    }

    // Lanes behind the last body hold nonsense and are left out.
    ORVEK_INLINE FirstPassResult Result() const {
        FirstPassResult result;
        for (int32 lane = 0; lane < kLanes && begin_ + lane < arrays_.bodies; lane++) {
            if (rate_[lane] > result.rate) result.rate = rate_[lane];
            if (apart_[lane] == 0) result.touching = true;
        }
        return result;
    }

    const ForceArrays& arrays_;
    const int32 begin_;
    Triples position_;
    Triples velocity_;
    Real radius_;
    Real gm_;  // 0 for a massless body
    Real rate_;
    Real apart_;  // 0 once a pair touches
    Triples first_;
    Triples jerk_;
    Triples snap_;
};

template <int32 kLanes, int32 kOrder, bool kKeeps>
void FirstPassOf(const ForceArrays& arrays, int32 begin, FirstPassResult* result) {
    const FirstPassResult found =
        Targets<kLanes>(arrays, begin).template FirstPass<kOrder, kKeeps>();
    if (found.rate > result->rate) result->rate = found.rate;
    if (found.touching) result->touching = true;
}

// Calls visit.operator()<lanes>(begin) for vectors of targets that cover the range. A short rest
// takes a narrower vector, whose square roots and divisions are faster.
template <int32 kLanes, class Visit>
ORVEK_INLINE void ForEachVector(int32 begin, int32 end, Visit visit) {
    if constexpr (kLanes > 2) {
        for (; end - begin > kLanes / 2; begin += kLanes)
            visit.template operator()<kLanes>(begin);
        ForEachVector<kLanes / 2>(begin, end, visit);
    } else {
        for (; begin < end; begin += kLanes)
            visit.template operator()<kLanes>(begin);
    }
}

template <int32 kLanes, int32 kOrder, bool kKeeps>
FirstPassResult FirstPass(const ForceArrays& arrays, int32 begin, int32 end) {
    FirstPassResult result;
    ForEachVector<kLanes>(begin, end, [&]<int32 kWidth>(int32 at) {
        FirstPassOf<kWidth, kOrder, kKeeps>(arrays, at, &result);
    });
    return result;
}

template <int32 kLanes>
FirstPassResult FirstPass(const ForceArrays& arrays, int32 order, int32 begin, int32 end) {
    if (order == 2) return FirstPass<kLanes, 2, false>(arrays, begin, end);
    if (order == 3) return FirstPass<kLanes, 3, false>(arrays, begin, end);
    if (arrays.kept == nullptr) return FirstPass<kLanes, 4, false>(arrays, begin, end);
    return FirstPass<kLanes, 4, true>(arrays, begin, end);
}

template <int32 kLanes, bool kKept>
void SecondPass(const ForceArrays& arrays, int32 begin, int32 end) {
    ForEachVector<kLanes>(begin, end, [&]<int32 kWidth>(int32 at) {
        Targets<kWidth>(arrays, at).template SecondPass<kKept>();
    });
}

template <int32 kLanes>
void SecondPass(const ForceArrays& arrays, int32 begin, int32 end) {
    if (arrays.kept == nullptr) return SecondPass<kLanes, false>(arrays, begin, end);
    SecondPass<kLanes, true>(arrays, begin, end);
}

}  // namespace
