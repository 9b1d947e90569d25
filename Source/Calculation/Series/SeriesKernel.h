// One instance of the series' kernels; only the SeriesKernel*.cpp files include it.
#pragma once

#include "Calculation/Series/MotionKernel.h"
#include "Calculation/Series/RingKernel.h"
#include "Calculation/Series/TargetKernel.h"
#include "Calculation/Series/TileKernel.h"

namespace {

template <int32 kLanes, int32 kPass = 0>
constexpr void SetTiles(SeriesInstance* instance) {
    if constexpr (kPass < kMaxPasses) {
        instance->tiles[kPass] = TileGroup<kLanes, 2 * kPass, true>;
        if constexpr (kPass < kFreshPasses)
            instance->freshTiles[kPass] = TileGroup<kLanes, 2 * kPass, false>;
        SetTiles<kLanes, kPass + 1>(instance);
    }
}

template <int32 kLanes>
constexpr SeriesInstance MakeSeriesInstance() {
    SeriesInstance instance{};
    instance.ring = RingSeries<kLanes>;
    SetTiles<kLanes>(&instance);
    instance.sumGroups = SumGroups<kLanes>;
    instance.activity = Activity<kLanes>;
    instance.targets = TargetSeries<kLanes>;
    instance.end = EndOfSeries<kLanes>;
    instance.evaluate = EvaluateSeries<kLanes>;
    instance.reach = ReachOfSeries<kLanes>;
    instance.isNear = IsNear<kLanes>;
    instance.bend = Bend<kLanes>;
    return instance;
}

}  // namespace
