// What stands over the picture of a display: the scale bar, the time, names of bodies. No state;
// the caller holds the lock of what it passes in.
#pragma once

#include <vector>

#include "Displays/Projection/BodyLabels.h"
#include "Displays/Trajectories/TrajectoryView.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Interface/Canvas/CanvasView.h"

// The largest of 1, 2 and 5 times a power of ten that is not above the limit.
[[nodiscard]] double RoundLength(double limit);
// A bar of a round length in the unit nearest to `uval`, or in kilometres or metres where that is
// far too large; at the left-bottom corner. `scale`: pixels per metre.
[[nodiscard]] OverlayItem MakeScaleBar(double scale, double uval, const UnitTable& units);
// `prefix` and the time (s) in the unit nearest to `uval`; at the left-top corner.
[[nodiscard]] OverlayItem MakeTimeText(const std::string& prefix, double time, double uval,
                                       const UnitTable& units);
// A line below the one at the left-top corner, if there is one.
[[nodiscard]] OverlayItem MakeTextBelow(const std::vector<OverlayItem>& texts, std::string line,
                                        const TrajectoryView& view);
// Adds the name of one body, which stands out: beside its disc, on the side where it lies within
// the view and off the texts that are there, if there is such a side.
void AddChosenName(const TrajectoryView& view, const BodyLabels& labels, int32 body,
                   std::vector<OverlayItem>* texts);
// Adds the names of all discs within the view, the heaviest bodies first, as far as they cover
// neither each other nor the texts that are there; that of the chosen body (-1: none) is there
// already. A name that the view's right border would cut stands on the left of its disc.
void AddNames(const TrajectoryView& view, const BodyLabels& labels, int32 chosen,
              std::vector<OverlayItem>* texts);
// The body whose disc the point is on, or near to; -1 for none.
[[nodiscard]] int32 FindBodyAt(const TrajectoryCache& cache, BPoint point);
