// Merges the bodies that touch in a side run, as the document's owner does in the document's.
// Used by the thread that the run belongs to, while it rests.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Calculation/MotionWatcher.h"
#include "Simulation/Document/CollisionMerger.h"

class SideRun;

class SideMerger final : private MotionWatcher {
public:
    // The run is not owned. `joiner` stands between the names of bodies that merge.
    SideMerger(SideRun* run, std::string joiner);

    // What touched before is not merged any more.
    void Forget() { touching_.clear(); }
    // Merges what has touched since then. Not whole, or nothing: the run cannot go on from there.
    [[nodiscard]] MergeResult Merge();

private:
    void BodiesAre(double time, const std::vector<Body*>& bodies, int32 massive) override;
    void Moved(const Piece& /*piece*/) override {}
    void Touched(double time, const BodyArrays& bodies,
                 const std::vector<CollidingPair>& pairs) override;

    SideRun* const run_;
    const std::string joiner_;
    std::vector<int64> ids_;  // of the bodies, in mass order
    std::vector<std::pair<int64, int64>> touching_;
};
