#include "Simulation/History/RunReplay.h"

#include "Calculation/Calculator.h"
#include "Calculation/CollisionMailbox.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Simulation/Document/CollisionMerger.h"

using Finding = RunHistory::Finding;

namespace {

std::unique_ptr<Epoch> EpochOf(const RunCheckpoint& at) {
    auto epoch = std::make_unique<Epoch>();
    at.PutSettings(epoch.get());
    for (std::size_t i = 0; i < at.state.CountBodies(); i++) {
        auto body =
            std::make_unique<Body>("", at.state.ids[i], rgb_color{}, rgb_color{}, kOriginID);
        at.PutBody(i, body.get());
        if (epoch->RootSystem()->AddChild(body.get()) == B_OK) static_cast<void>(body.release());
    }
    return epoch;
}

}  // namespace

RunReplay::RunReplay(const RunCheckpoint& from) : from_(from), side_(EpochOf(from)) {
    stepper_.Enter(side_.GetCalculator());
    side_.AddConsumer(&stepper_);
}

Finding RunReplay::RunTo(double time, RunHistory::Which which, const std::vector<RunEvent>& events,
                         const RunHistory::Progress& progress, RunCheckpoint* moment) {
    {
        const WriteGuard guard(side_.Portal());
        if (side_.GetCalculator()->ResumeRun(from_.calculator) != B_OK) return Finding::kLost;
    }
    side_.GetCalculator()->SetRunLimit(0, time);
    while (!IsThere(time)) {
        if (!Run(time, progress)) return Finding::kCancelled;
        if (!IsThere(time) && !Merge(events)) return Finding::kLost;
    }
    while (which == RunHistory::Which::kNext && side_.Time() == time) {
        stepper_.StopAtNext();
        if (!Run(time, progress)) return Finding::kCancelled;
        if (side_.Time() == time && !Merge(events)) return Finding::kLost;
    }
    return Take(moment);
}

Finding RunReplay::Take(RunCheckpoint* moment) {
    const ReadGuard guard(side_.Portal());
    if (side_.GetCalculator()->Archive(&moment->calculator, true) != B_OK) return Finding::kLost;
    moment->state = StateOf(*side_.Portal());
    for (const Body* const body : side_.Portal()->BodiesInMassOrder())
        moment->radii.push_back(body->Radius());
    moment->order = from_.order;
    moment->cutoff = from_.cutoff;
    moment->onContact = from_.onContact;
    moment->isBackwards = from_.isBackwards;
    return Finding::kFound;
}

bool RunReplay::Run(double until, const RunHistory::Progress& progress) {
    const double start = from_.state.time;
    return side_.Run(
        true, [&] { return !progress || progress((side_.Time() - start) / (until - start)); });
}

// As they were merged in the run, pair by pair.
bool RunReplay::Merge(const std::vector<RunEvent>& events) {
    BMessage pairs(CollisionMailbox::kCollisionMessage);
    const double now = side_.Time();
    for (const RunEvent& event : events) {
        if (event.kind != RunEvent::Kind::kMerger || event.time != now || event.before.size() != 2)
            continue;
        pairs.AddInt64(CollisionMailbox::kLaterField, event.before[1].id);
        pairs.AddInt64(CollisionMailbox::kEarlierField, event.before[0].id);
    }
    if (MergeCollidingBodies(side_.Portal(), pairs, {}).mergers.empty()) return false;
    for (const RunEvent& event : events)
        if (event.kind == RunEvent::Kind::kMerger && event.time == now && !event.before.empty())
            if (MassSystem* const survivor = side_.GetEpoch()->SystemFromID(event.before[0].id))
                survivor->SetName(event.name.c_str());
    return true;
}

bool RunReplay::IsThere(double time) {
    return from_.isBackwards ? side_.Time() <= time : side_.Time() >= time;
}

// --- One report more ---

void RunReplay::Stepper::Enter(Calculator* calculator) {
    calculator_ = calculator;
    release_ben(calculator_->WriteOk());
}

void RunReplay::Stepper::PrepareForGo(int32 /*reportsPerDraw*/) {
    if (isAsked_) calculator_->EndBatchAfter(1);
}

void RunReplay::Stepper::ReadData(int32 count, double* /*times*/, double* /*positions*/,
                                  double* /*velocities*/) {
    if (isAsked_ && count > 0) calculator_->SetInternalPause();
}

void RunReplay::Stepper::ReadOk() {
    release_ben(calculator_->WriteOk());
}
