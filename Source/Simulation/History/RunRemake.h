// Makes the run of an epoch again, from the epoch that it began from, with all that is kept of a
// run. It must arrive at the epoch's state to the bit. Used by one thread, which waits while
// another calculates.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Simulation/Document/SystemState.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/SideMerger.h"
#include "Simulation/History/SideRun.h"

class RunRemake final {
public:
    // A run has led to the epoch from its parent, as far as one can see. The caller holds the
    // document's read lock, as for the constructor.
    [[nodiscard]] static bool IsPossible(const AbEpoch& epoch);

    // Of an epoch of which that is true. `joiner` stands between the names of bodies that merge.
    RunRemake(const AbEpoch& epoch, HistoryLimits limits, std::string joiner);
    ~RunRemake();
    RunRemake(const RunRemake&) = delete;
    RunRemake& operator=(const RunRemake&) = delete;

    // Once. kLost: the run does not arrive there.
    [[nodiscard]] RunHistory::Finding Make(const RunHistory::Progress& progress);
    // What was found.
    [[nodiscard]] std::unique_ptr<KeptRun> TakeRun() { return kept_.Take(side_.GetEpoch()); }

private:
    bool Merge();
    [[nodiscard]] bool IsThere();
    [[nodiscard]] bool HasArrived();

    const std::unique_ptr<Epoch> end_;
    const bool isBackwards_;
    SideRun side_;
    RunHistory kept_;
    SideMerger merger_;
};
