// What the ranks behind number 0 do: their parts of the work, whenever number 0 calls, until that
// says it is the end. One thread, and those of the team that shares its work.
#pragma once

#include "Calculation/ForceEvaluator.h"
#include "Calculation/Ranks.h"
#include "Calculation/Series/SeriesForces.h"
#include "Calculation/Series/SeriesStore.h"
#include "Calculation/Series/SplitStates.h"

class RankHelper {
public:
    // `ranks` is not owned.
    RankHelper(Ranks* ranks, int32 threads);

    void Help();
    // For number 0: lets the others end.
    static void End(Ranks* ranks);

private:
    void MakeSeries(const RankTask& task);

    Ranks* const ranks_;
    ForceEvaluator evaluator_;
    SeriesForces forces_;
    SeriesStore store_;
    SplitStates states_;
};
