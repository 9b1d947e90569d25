#include "Simulation/History/RunRemake.h"

#include <utility>

#include "Calculation/Calculator.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Simulation/History/KeptRun.h"

using Finding = RunHistory::Finding;

namespace {

// Of the way.
constexpr double kLittle = 1e-9;

std::unique_ptr<Epoch> CopyOf(const AbEpoch& epoch) {
    std::unique_ptr<AbEpoch> copy(epoch.Copy());
    if (dynamic_cast<Epoch*>(copy.get()) == nullptr) return std::make_unique<Epoch>();
    return std::unique_ptr<Epoch>(static_cast<Epoch*>(copy.release()));
}

bool IsSame(const Body& body, const Body* other) {
    return other != nullptr && body.M() == other->M() && body.Radius() == other->Radius() &&
           body.Position() == other->Position() && body.Velocity() == other->Velocity();
}

std::size_t CountBodies(const MassSystem& system) {
    if (dynamic_cast<const Body*>(&system) != nullptr) return 1;
    std::size_t count = 0;
    for (int32 i = 0; i < system.CountChildren(); i++)
        count += CountBodies(*system.ChildAt(i));
    return count;
}

}  // namespace

bool RunRemake::IsPossible(const AbEpoch& epoch) {
    const AbEpoch* const start = epoch.Parent();
    if (start == nullptr || start->RootSystem() == nullptr || epoch.RootSystem() == nullptr ||
        start->RootSystem()->CountChildren() == 0)
        return false;
    return !epoch.Writeable() && epoch.CalculatorState() != nullptr &&
           epoch.Time() != start->Time();
}

RunRemake::RunRemake(const AbEpoch& epoch, HistoryLimits limits, std::string joiner)
    : end_(CopyOf(epoch)),
      isBackwards_(epoch.Time() < epoch.Parent()->Time()),
      side_(CopyOf(*epoch.Parent())),
      kept_(side_.Portal(), side_.GetCalculator(), limits),
      merger_(&side_, std::move(joiner)) {
    side_.AddConsumer(&kept_);
}

RunRemake::~RunRemake() = default;

Finding RunRemake::Make(const RunHistory::Progress& progress) {
    side_.Prepare(isBackwards_);
    side_.GetCalculator()->SetRunLimit(0, end_->Time());
    const double start = side_.Time();
    const double way = end_->Time() - start;
    bool hasGoneOn = false;
    for (bool isHeld = false;; isHeld = true) {
        merger_.Forget();
        if (!side_.Run(isHeld, [&] { return progress((side_.Time() - start) / way); }))
            return Finding::kCancelled;
        if (HasArrived()) return Finding::kFound;
        if (!Merge()) {
            if (hasGoneOn || !IsThere()) return Finding::kLost;
            // Where bodies touch at its end that may lie behind the time by less than this tells.
            side_.GetCalculator()->SetRunLimit(0, end_->Time() + kLittle * way);
            hasGoneOn = true;
            continue;
        }
        // It may have ended with the merger.
        if (IsThere()) return HasArrived() ? Finding::kFound : Finding::kLost;
    }
}

bool RunRemake::Merge() {
    const MergeResult result = merger_.Merge();
    kept_.NoteMergers(result);
    return !result.mergers.empty() && !result.unmerged;
}

bool RunRemake::IsThere() {
    return isBackwards_ ? side_.Time() <= end_->Time() : side_.Time() >= end_->Time();
}

bool RunRemake::HasArrived() {
    const ReadGuard guard(side_.Portal());
    if (side_.GetEpoch()->Time() != end_->Time()) return false;
    const std::vector<Body*> bodies = side_.Portal()->BodiesInMassOrder();
    for (const Body* const body : bodies)
        if (!IsSame(*body, dynamic_cast<const Body*>(end_->SystemFromID(body->ID())))) return false;
    return bodies.size() == CountBodies(*end_->RootSystem());
}
