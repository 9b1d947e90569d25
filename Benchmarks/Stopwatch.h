// Times of pieces of code on a machine that is busy with other things too: each piece is measured
// many times, the pieces in turn, so that a slow moment hits all of them alike. Main thread.
#pragma once

#include <functional>
#include <vector>

#include "Platform/Support/SupportDefs.h"

// Seconds for one call.
struct Timing {
    double median;
    double least;
};

// Calls every piece `calls` times in a row, and that `repetitions` times round all pieces, after
// one round that does not count.
std::vector<Timing> Measure(const std::vector<std::function<void()>>& pieces, int32 calls,
                            int32 repetitions);
