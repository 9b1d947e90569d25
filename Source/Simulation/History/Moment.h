// A moment of a simulation: now, or one of a kept run, with all bodies as they were then. A plain
// value; the epoch of the past is in no tree and is never changed, so that any thread may read it.
#pragma once

#include <memory>

#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Simulation/History/RunCheckpoint.h"

class RunHistory;

struct Moment {
    const AbEpoch* run = nullptr;  // only compared, unless the tree has it still
    std::shared_ptr<Epoch> epoch;  // null: now
    bool isExact = false;          // the bits of a report; else between two samples
    // A system that the document does not have now, and that is edited there.
    int64 focus = kNoSystemID;

    [[nodiscard]] bool IsPast() const { return epoch != nullptr; }
    // A portal in whose focus the moment is. The caller holds the document's read lock.
    [[nodiscard]] EpochPortal PortalFrom(const EpochPortal& document) const;
};

// The epoch that a run would be in at that moment: with the looks that bodies have in the run's
// epoch, or had at its start. The caller holds the portal's read lock, and the tree has the run.
[[nodiscard]] Moment ExactMoment(const AbEpoch& run, const RunCheckpoint& at);
// Between the samples of the run; bodies of which no sample tells are left out.
[[nodiscard]] Moment NearMoment(const AbEpoch& run, double time, const RunHistory& history);
