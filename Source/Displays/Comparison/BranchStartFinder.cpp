#include "Displays/Comparison/BranchStartFinder.h"

#include <new>
#include <utility>

#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/Moment.h"

BranchStartFinder::BranchStartFinder(EpochPortal* portal, const RunHistory* history, Ways ways,
                                     Done done)
    : portal_(portal),
      history_(history),
      ways_(std::move(ways)),
      done_(std::move(done)),
      thread_([this] { Work(); }) {}

BranchStartFinder::~BranchStartFinder() {
    isEnding_ = true;
    thread_.join();
}

std::optional<BranchStarts> BranchStartFinder::Found() const {
    const std::lock_guard lock(mutex_);
    return found_;
}

void BranchStartFinder::Work() {
    BranchStarts starts;
    for (const auto& [branch, way] : ways_) {
        try {
            RunCheckpoint moment;
            if (history_->MomentAt(
                    way.run, way.end, [this](double) { return !isEnding_; }, &moment) !=
                RunHistory::Finding::kFound)
                continue;
            const ReadGuard guard(portal_);
            if (portal_->HasEpoch(way.run)) starts[branch] = ExactMoment(*way.run, moment).epoch;
        } catch (const std::bad_alloc&) {
            // As if it could not be found.
        }
        if (isEnding_) return;
    }
    {
        const std::lock_guard lock(mutex_);
        found_ = std::move(starts);
    }
    done_();
}
