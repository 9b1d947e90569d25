#include "Simulation/History/RunHistory.h"

#include <new>
#include <utility>

#include "Calculation/Calculator.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/KeptRun.h"
#include "Simulation/History/RunReplay.h"

namespace {

std::weak_ptr<const void> LifeOf(const AbEpoch* epoch) {
    const auto* const real = dynamic_cast<const Epoch*>(epoch);
    return real != nullptr ? real->Life() : std::weak_ptr<const void>();
}

bool HasChild(const AbEpoch* parent, const AbEpoch* epoch) {
    for (int32 i = 0; parent != nullptr && i < parent->CountChildren(); i++)
        if (parent->ChildAt(i) == epoch) return true;
    return false;
}

}  // namespace

RunHistory::RunHistory(EpochPortal* portal, Calculator* calculator, HistoryLimits limits)
    : portal_(portal), calculator_(calculator), limits_(limits) {
    // Ready for the first batch.
    release_ben(calculator_->WriteOk());
}

RunHistory::~RunHistory() = default;

// --- Keeping ---

void RunHistory::PrepareForGo(int32 /*reportsPerDraw*/) {
    try {
        BeginOrGoOn();
    } catch (const std::bad_alloc&) {
        ForgetCurrent();
    }
    const std::lock_guard lock(mutex_);
    if (current_ != nullptr) calculator_->EndBatchAfter(current_->ReportsToCheckpoint());
}

void RunHistory::BeginOrGoOn() {
    const AbEpoch* epoch = nullptr;
    std::weak_ptr<const void> life;
    {
        const ReadGuard guard(portal_);
        epoch = portal_->FocusEpoch();
        life = LifeOf(epoch);
        const std::lock_guard lock(mutex_);
        if (current_ != nullptr && epoch != currentEpoch_) current_->Leave();
        current_ = nullptr;
        currentEpoch_ = epoch;
    }
    auto checkpoint = TakeCheckpoint(portal_, *calculator_);
    const int64 begun = calculator_->RunsBegun();
    if (checkpoint) checkpoint->isStart = begun != runsBegun_;
    runsBegun_ = begun;
    const std::lock_guard lock(mutex_);
    ForgetDead();
    if (!checkpoint) return;
    Entry& entry = runs_[epoch];
    if (entry.run != nullptr && entry.run->IsBackwards() == checkpoint->isBackwards &&
        entry.run->IsBefore(entry.run->EndTime(), checkpoint->state.time)) {
        entry.run->GoOn(std::move(*checkpoint));
    } else {
        entry = {std::move(life), std::make_unique<KeptRun>(std::move(*checkpoint))};
    }
    current_ = entry.run.get();
}

// A run that is only half kept would mislead.
void RunHistory::ForgetCurrent() {
    const std::lock_guard lock(mutex_);
    current_ = nullptr;
    runs_.erase(currentEpoch_);
    wasShort_ = true;
}

void RunHistory::ReadData(int32 count, double* times, double* positions, double* velocities) {
    if (current_ == nullptr || count <= 0) return;
    bool isDue = false;
    {
        const std::lock_guard lock(mutex_);
        current_->Add(count, times, positions, velocities);
        isDue = current_->IsCheckpointDue();
    }
    if (isDue) KeepCheckpoint();
    {
        const std::lock_guard lock(mutex_);
        MakeRoom();
        calculator_->EndBatchAfter(current_->ReportsToCheckpoint());
    }
    TellShortage();
}

// Once: the run goes on.
void RunHistory::TellShortage() {
    if (isShortTold_ || !WasShortOfMemory()) return;
    isShortTold_ = true;
    portal_->TellObservers(kRunsKeptChanged);
}

// Not with the history's lock held: a thread that has the model's may wait for it.
void RunHistory::KeepCheckpoint() {
    try {
        auto checkpoint = TakeCheckpoint(portal_, *calculator_);
        if (!checkpoint) return;
        const std::lock_guard lock(mutex_);
        current_->Keep(std::move(*checkpoint));
        current_->ThinCheckpointsTo(limits_.checkpoints);
    } catch (const std::bad_alloc&) {
        const std::lock_guard lock(mutex_);
        wasShort_ = true;
        current_->ThinCheckpoints();
    }
}

void RunHistory::ReadOk() {
    release_ben(calculator_->WriteOk());
}

void RunHistory::NoteMergers(const MergeResult& result) {
    if (result.mergers.empty()) return;
    std::vector<std::string> names;
    const AbEpoch* epoch = nullptr;
    {
        const ReadGuard guard(portal_);
        epoch = portal_->FocusEpoch();
        for (const Merger& merger : result.mergers) {
            const MassSystem* const survivor = epoch->SystemFromID(merger.survivor);
            names.push_back(survivor != nullptr ? survivor->Name() : std::string());
        }
    }
    const std::lock_guard lock(mutex_);
    if (const auto found = runs_.find(epoch); found != runs_.end())
        found->second.run->NoteMergers(result.mergers, names);
}

bool RunHistory::Adopt(const AbEpoch* epoch, const std::weak_ptr<const void>& life,
                       std::unique_ptr<KeptRun> run) {
    {
        const ReadGuard guard(portal_);
        const std::lock_guard lock(mutex_);
        if (life.expired()) return false;
        if (currentEpoch_ == epoch) {
            if (calculator_->IsRunning()) return false;
            current_ = nullptr;
        }
        run->Leave();
        ForgetDead();
        runs_[epoch] = {life, std::move(run)};
        MakeRoom();
    }
    portal_->TellObservers(kRunsKeptChanged);
    return true;
}

std::unique_ptr<KeptRun> RunHistory::Take(const AbEpoch* epoch) {
    const std::lock_guard lock(mutex_);
    const auto found = runs_.find(epoch);
    if (found == runs_.end()) return nullptr;
    std::unique_ptr<KeptRun> run = std::move(found->second.run);
    runs_.erase(found);
    current_ = nullptr;
    return run;
}

std::unique_ptr<KeptRun> RunHistory::CopyOf(const AbEpoch* epoch) const {
    const std::lock_guard lock(mutex_);
    const KeptRun* const run = Find(epoch);
    return run == nullptr ? nullptr : run->Copy();
}

// --- Making room ---

void RunHistory::SetBudget(std::size_t bytes) {
    {
        const std::lock_guard lock(mutex_);
        limits_.bytes = bytes;
        MakeRoom();
    }
    portal_->TellObservers(kRunsKeptChanged);
}

HistoryLimits RunHistory::Limits() const {
    const std::lock_guard lock(mutex_);
    return limits_;
}

void RunHistory::ForgetDead() {
    std::erase_if(runs_, [this](const auto& run) {
        return run.second.run.get() != current_ && run.second.life.expired();
    });
    std::erase_if(origins_, [](const auto& branch) { return branch.second.life.expired(); });
}

void RunHistory::MakeRoom() {
    if (SampleBytes() + CheckpointBytes() <= limits_.bytes) return;
    ForgetDead();
    while (CheckpointBytes() > limits_.bytes / 2)
        if (!RunWithMost(&KeptRun::CheckpointBytes)->ThinCheckpoints()) break;
    while (SampleBytes() + CheckpointBytes() > limits_.bytes && SampleBytes() > 0)
        RunWithMost(&KeptRun::SampleBytes)->ThinSamples();
}

std::size_t RunHistory::SampleBytes() const {
    std::size_t bytes = 0;
    for (const auto& [epoch, entry] : runs_)
        bytes += entry.run->SampleBytes();
    return bytes;
}

std::size_t RunHistory::CheckpointBytes() const {
    std::size_t bytes = 0;
    for (const auto& [epoch, entry] : runs_)
        bytes += entry.run->CheckpointBytes();
    return bytes;
}

KeptRun* RunHistory::RunWithMost(std::size_t (KeptRun::*bytes)() const) const {
    KeptRun* most = nullptr;
    for (const auto& [epoch, entry] : runs_)
        if (most == nullptr || (entry.run.get()->*bytes)() > (most->*bytes)())
            most = entry.run.get();
    return most;
}

// --- Asking ---

const KeptRun* RunHistory::Find(const AbEpoch* epoch) const {
    const auto found = runs_.find(epoch);
    return found == runs_.end() || found->second.life.expired() ? nullptr : found->second.run.get();
}

std::optional<RunHistory::Span> RunHistory::SpanOf(const AbEpoch* epoch) const {
    const std::lock_guard lock(mutex_);
    const KeptRun* const run = Find(epoch);
    if (run == nullptr) return std::nullopt;
    return Span{run->StartTime(), run->EndTime()};
}

void RunHistory::NoteBranch(const AbEpoch* branch, const AbEpoch* run, double time) {
    const std::lock_guard lock(mutex_);
    origins_[branch] = {LifeOf(branch), run, time};
}

std::optional<RunHistory::Way> RunHistory::WayTo(const AbEpoch& epoch) const {
    const std::lock_guard lock(mutex_);
    if (const KeptRun* const own = Find(&epoch); own != nullptr)
        return Way{&epoch, own->StartTime(), own->EndTime()};
    const auto origin = origins_.find(&epoch);
    if (origin == origins_.end() || origin->second.life.expired()) return std::nullopt;
    const auto& [life, run, time] = origin->second;
    const KeptRun* const kept = Find(run);
    if (kept == nullptr || !HasChild(epoch.Parent(), run)) return std::nullopt;
    return Way{run, kept->StartTime(), time};
}

std::vector<int64> RunHistory::BodiesOf(const AbEpoch* epoch) const {
    const std::lock_guard lock(mutex_);
    const KeptRun* const run = Find(epoch);
    return run == nullptr ? std::vector<int64>() : run->Bodies();
}

std::vector<Sample> RunHistory::Samples(const AbEpoch* epoch, int64 body, double from, double to,
                                        std::size_t most) const {
    const std::lock_guard lock(mutex_);
    const KeptRun* const run = Find(epoch);
    return run == nullptr ? std::vector<Sample>() : run->Samples(body, from, to, most);
}

std::vector<RunEvent> RunHistory::Events(const AbEpoch* epoch) const {
    const std::lock_guard lock(mutex_);
    const KeptRun* const run = Find(epoch);
    return run == nullptr ? std::vector<RunEvent>() : run->Events();
}

RunHistory::Finding RunHistory::MomentAt(const AbEpoch* epoch, double time,
                                         const Progress& progress, RunCheckpoint* moment,
                                         Which which) const {
    std::shared_ptr<const RunCheckpoint> from;
    std::vector<RunEvent> events;
    {
        const std::lock_guard lock(mutex_);
        const KeptRun* const run = Find(epoch);
        if (run == nullptr || !run->IsBefore(time, run->EndTime()) ||
            !run->IsBefore(run->StartTime(), time) ||
            (which == Which::kNext && time == run->EndTime()))
            return Finding::kNotKept;
        from = run->CheckpointBefore(time);
        if (from == nullptr) return Finding::kNotKept;
        if (!run->IsBefore(time, from->state.time) && run->IsLastAfter(time)) time = run->EndTime();
        events = run->Events();
    }
    return RunReplay(*from).RunTo(time, which, events, progress, moment);
}

std::size_t RunHistory::Bytes() const {
    const std::lock_guard lock(mutex_);
    return SampleBytes() + CheckpointBytes();
}

std::vector<std::shared_ptr<const RunCheckpoint>> RunHistory::ExactStates(
    const AbEpoch* epoch) const {
    const std::lock_guard lock(mutex_);
    const KeptRun* const run = Find(epoch);
    if (run == nullptr) return {};
    std::vector<std::shared_ptr<const RunCheckpoint>> states = run->Checkpoints();
    auto end = std::make_shared<RunCheckpoint>();
    end->report = run->Reports();
    end->state = run->End();
    states.push_back(std::move(end));
    return states;
}

std::size_t RunHistory::CountCheckpoints(const AbEpoch* epoch) const {
    const std::lock_guard lock(mutex_);
    const KeptRun* const run = Find(epoch);
    return run == nullptr ? 0 : run->CountCheckpoints();
}

bool RunHistory::WasShortOfMemory() const {
    const std::lock_guard lock(mutex_);
    if (wasShort_) return true;
    for (const auto& [epoch, entry] : runs_)
        if (entry.run->WasShortOfMemory()) return true;
    return false;
}
