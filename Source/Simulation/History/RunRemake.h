// Makes the run of an epoch again, from the epoch that it began from, with all that is kept of a
// run. It must arrive at the epoch's state to the bit. Used by one thread, which waits while
// another calculates.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Calculation/MotionWatcher.h"
#include "Simulation/Document/SystemState.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/SideRun.h"

class RunRemake final : private MotionWatcher {
public:
    // A run has led to the epoch from its parent, as far as one can see. The caller holds the
    // document's read lock, as for the constructor.
    [[nodiscard]] static bool IsPossible(const AbEpoch& epoch);

    // Of an epoch of which that is true. `joiner` stands between the names of bodies that merge.
    RunRemake(const AbEpoch& epoch, HistoryLimits limits, std::string joiner);
    ~RunRemake() override;

    // Once. kLost: the run does not arrive there.
    [[nodiscard]] RunHistory::Finding Make(const RunHistory::Progress& progress);
    // What was found.
    [[nodiscard]] std::unique_ptr<KeptRun> TakeRun() { return kept_.Take(side_.GetEpoch()); }

private:
    void BodiesAre(double time, const std::vector<Body*>& bodies, int32 massive) override;
    void Moved(const Piece& /*piece*/) override {}
    void Touched(double time, const BodyArrays& bodies,
                 const std::vector<CollidingPair>& pairs) override;

    void Begin();
    bool Merge();
    [[nodiscard]] bool IsThere();
    [[nodiscard]] bool HasArrived();

    const std::string joiner_;
    const std::unique_ptr<Epoch> end_;
    const bool isBackwards_;
    SideRun side_;
    RunHistory kept_;
    std::vector<int64> ids_;  // of the bodies, in mass order
    std::vector<std::pair<int64, int64>> touching_;
};
