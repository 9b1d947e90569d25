#include "Simulation/History/RunReplay.h"

#include <chrono>
#include <limits>

#include "Calculation/Calculator.h"
#include "Calculation/CollisionMailbox.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Simulation/Document/CollisionMerger.h"

using Finding = RunHistory::Finding;

namespace {

constexpr std::chrono::milliseconds kProgressInterval(100);

}  // namespace

RunReplay::RunReplay(const RunCheckpoint& from)
    : from_(from),
      portal_(&undoChain_, &epoch_),
      calculator_(MakeCalculator(&portal_, &noConsumers_, nullptr)) {
    CopyBodies();
    portal_.SetEpochTo(&epoch_);
    portal_.AddObserver(this);
}

RunReplay::~RunReplay() {
    portal_.RemoveObserver(this);
    portal_.SetEpochTo(nullptr);
}

void RunReplay::CopyBodies() {
    const SystemState& state = from_.state;
    from_.PutSettings(&epoch_);
    for (std::size_t i = 0; i < state.CountBodies(); i++) {
        auto body = std::make_unique<Body>("", state.ids[i], rgb_color{}, rgb_color{}, kOriginID);
        from_.PutBody(i, body.get());
        if (epoch_.RootSystem()->AddChild(body.get()) == B_OK) static_cast<void>(body.release());
    }
}

Finding RunReplay::RunTo(double time, const std::vector<RunEvent>& events,
                         const RunHistory::Progress& progress, RunCheckpoint* moment) {
    {
        const WriteGuard guard(&portal_);
        if (calculator_->ResumeRun(from_.calculator) != B_OK) return Finding::kLost;
    }
    calculator_->SetRunLimit(0, time);
    while (!IsThere(time)) {
        if (!Run(time, progress)) return Finding::kCancelled;
        if (!IsThere(time) && !Merge(events)) return Finding::kLost;
    }
    return Take(moment);
}

Finding RunReplay::Take(RunCheckpoint* moment) {
    const ReadGuard guard(&portal_);
    if (calculator_->Archive(&moment->calculator, true) != B_OK) return Finding::kLost;
    moment->state = StateOf(portal_);
    for (const Body* const body : portal_.BodiesInMassOrder())
        moment->radii.push_back(body->Radius());
    moment->order = from_.order;
    moment->cutoff = from_.cutoff;
    moment->onContact = from_.onContact;
    moment->isBackwards = from_.isBackwards;
    return Finding::kFound;
}

bool RunReplay::Run(double until, const RunHistory::Progress& progress) {
    hasParked_ = false;  // nobody else looks at it now
    calculator_->UnPause(true);
    bool goesOn = true;
    std::unique_lock lock(mutex_);
    while (goesOn && !parking_.wait_for(lock, kProgressInterval, [this] { return hasParked_; })) {
        lock.unlock();
        const double way = until - from_.state.time;
        goesOn = !progress || progress((Time() - from_.state.time) / way);
        lock.lock();
    }
    lock.unlock();
    calculator_->Pause();
    return goesOn;
}

// As they were merged in the run, pair by pair.
bool RunReplay::Merge(const std::vector<RunEvent>& events) {
    BMessage pairs(CollisionMailbox::kCollisionMessage);
    const double now = Time();
    for (const RunEvent& event : events) {
        if (event.kind != RunEvent::Kind::kMerger || event.time != now || event.before.size() != 2)
            continue;
        pairs.AddInt64(CollisionMailbox::kLaterField, event.before[1].id);
        pairs.AddInt64(CollisionMailbox::kEarlierField, event.before[0].id);
    }
    if (MergeCollidingBodies(&portal_, pairs, {}).mergers.empty()) return false;
    for (const RunEvent& event : events)
        if (event.kind == RunEvent::Kind::kMerger && event.time == now && !event.before.empty())
            if (MassSystem* const survivor = epoch_.SystemFromID(event.before[0].id))
                survivor->SetName(event.name.c_str());
    return true;
}

bool RunReplay::IsThere(double time) {
    return from_.isBackwards ? Time() <= time : Time() >= time;
}

double RunReplay::Time() {
    const ReadGuard guard(&portal_);
    return epoch_.Time();
}

void RunReplay::Changed(int32 what) {
    if (what != kCalculatorParked) return;
    const std::lock_guard lock(mutex_);
    hasParked_ = true;
    parking_.notify_all();
}
