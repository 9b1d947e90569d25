// Where a piece of a step is to be cut so that what is looked for happens at most once from one cut
// to the next; in scales, rising, with both ends of the piece.
#pragma once

#include <vector>

#include "Calculation/Series/SeriesStep.h"

// Two bodies turn from approaching each other to going apart, or back.
[[nodiscard]] std::vector<double> CutsBetweenTurns(const SeriesStep& step, int32 body, int32 other,
                                                   double from, double to);
// A body goes through the plane z = 0.
[[nodiscard]] std::vector<double> CutsBetweenCrossings(const SeriesStep& step, int32 body,
                                                       double from, double to);
