// What stands over the picture of a display: the scale bar, the time, names of bodies. No state;
// the caller holds the lock of what it passes in.
#pragma once

#include <vector>

#include "BodyLabels.h"
#include "OverlayItem.h"
#include "TrajectoryCache.h"
#include "UnitTable.h"

// A bar of a round length in the unit nearest to `uval`, or in kilometres or metres where that is
// far too large; at the left-bottom corner. `scale`: pixels per metre.
[[nodiscard]] OverlayItem MakeScaleBar(double scale, double uval, const UnitTable& units);
// `prefix` and the time (s) in the unit nearest to `uval`; at the left-top corner.
[[nodiscard]] OverlayItem MakeTimeText(const std::string& prefix, double time, double uval,
                                       const UnitTable& units);
// Beside the disc of one body; `isChosen` ones stand out.
[[nodiscard]] OverlayItem MakeName(const TrajectoryCache::Disc& disc, const std::string& name,
                                   bool isChosen);
// The names of all discs within `bounds`, the heaviest bodies first, as far as they do not cover
// each other.
[[nodiscard]] std::vector<OverlayItem> MakeNames(const TrajectoryCache& cache,
                                                 const BodyLabels& labels, BRect bounds);
// The body whose disc the point is on, or near to; -1 for none.
[[nodiscard]] int32 FindBodyAt(const TrajectoryCache& cache, BPoint point);
