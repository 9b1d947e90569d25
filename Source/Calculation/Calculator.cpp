#include "Calculation/Calculator.h"

#include <algorithm>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include "Calculation/ReportConsumer.h"
#include "Calculation/Truncation.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/ShortestOrbit.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr int32 kMinReportsPerDraw = 10;
// Of the wanted number of batches, without a change of their size.
constexpr float kDeadBandBelow = 0.9f;
constexpr float kDeadBandAbove = 1.1f;
constexpr float kSecondsPerMicrosecond = 1e-6f;
// Below this many updates a second the pacing measures over five of them, else over a second.
constexpr float kSlowUpdates = 5.0f;
constexpr float kSlowInterval = 5'000'000.0f;
constexpr int64 kInterval = 1'000'000;
// Batches per update, where a batch does not end with a picture.
constexpr int32 kNoUpdate = std::numeric_limits<int32>::max();
// Between two attempts to post to a full port.
constexpr bigtime_t kPostRetryInterval = 100'000;

// No calculator without its benaphores and its thread.
std::system_error NoResources() {
    return std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
}

Benaphore* MakeBen(const char* name) {
    if (Benaphore* const ben = create_ben(0, name)) return ben;
    throw NoResources();
}

}  // namespace

Calculator::Calculator(EpochPortal* portal, const std::vector<ReportConsumer*>* consumers,
                       BLooper* target)
    : target_(target),
      iterateOk_(MakeBen("Iterate Ok")),
      untilWaiting_(MakeBen("Until Calculator Waiting")),
      writeOk_(MakeBen("Write Ok")),
      portal_(portal),
      consumers_(consumers),
      thread_(spawn_thread(calc_entry, "Master Calculation Thread", B_LOW_PRIORITY, this)) {
    if (thread_ < 0) throw NoResources();
    resume_thread(thread_);
    acquire_ben(untilWaiting_.get());
}

Calculator::~Calculator() {
    // The thread is parked: it wakes, sees the flag and calls nothing of this object any more.
    quit_ = true;
    release_ben(iterateOk_.get());
    status_t result;
    wait_for_thread(thread_, &result);
}

status_t Calculator::Archive(BMessage* into, bool) const {
    if (into == nullptr) return B_BAD_VALUE;
    into->what = B_ARCHIVED_OBJECT;
    return B_OK;
}

void Calculator::Recache() {
    bodies_ = portal_->BodiesInMassOrder();
    massiveBodies_ = static_cast<int32>(
        std::count_if(bodies_.begin(), bodies_.end(), [](const Body* b) { return b->M() > 0.0; }));
    cutoff_ = portal_->FocusEpoch()->Cutoff();
    if (IsHeldRun())
        batch_.SetSize(CountBodies(), reportsPerDraw_);
    else
        batch_.Restart(CountBodies(), reportsPerDraw_);
}

int32 Calculator::MostReports() const {
    const int32 most = std::min(ReportsPerDraw(), batch_.Room());
    return untilBatchEnd_ > 0 && untilBatchEnd_ < most ? static_cast<int32>(untilBatchEnd_) : most;
}

void Calculator::Regenerate(BMessage*) {}

void Calculator::Pause() {
    if (atomic_add(&stop_.pauseCount, 1) != 0) return;
    pictures_.Times().Wake();
    acquire_ben(untilWaiting_.get());
    // Waits until every consumer has finished the last batch, and leaves the gate as it was.
    if (const int32 consumers = CountConsumers(); consumers > 0) {
        acquire_ben(writeOk_.get(), consumers);
        release_ben(writeOk_.get(), consumers);
    }
}

void Calculator::UnPause(bool isHeldRun) {
    if (atomic_add(&stop_.pauseCount, -1) != 1) return;
    isHeldRun_ = isHeldRun;
    release_ben(iterateOk_.get());
}

void Calculator::SetInternalPause() {
    stop_.internalPause = true;
}

void Calculator::AdjustAnimationSpeed(float batches, int64 elapsed) {
    const float target = static_cast<float>(elapsed) * kSecondsPerMicrosecond * updatesPerSecond_;
    const bool areCut = 2.0f * static_cast<float>(std::exchange(cutBatches_, 0)) > batches;
    batchesPerUpdate_ = areCut ? std::max(Truncate<int32>(batches / target + 0.5f), 1) : 1;
    if (batches >= kDeadBandBelow * target && batches <= kDeadBandAbove * target) return;
    const int32 former = reportsPerDraw_;
    auto reports = Truncate<int32>(batches * static_cast<float>(former) / target);
    // A step up is one report at least. A step down may be none, deliberately.
    if (reports == former && batches > target) reports++;
    reports = std::max(reports, kMinReportsPerDraw);
    if (reports > former && areCut) return;  // larger ones would be cut, too
    // Only the arrays grow: the consumers have yet to get the batch that they hold, and if the
    // model were read again here, the step would restart and the results would depend on the clock.
    try {
        if (reports > former) batch_.SetSize(CountBodies(), reports);
    } catch (const std::bad_alloc&) {
        return;  // no room for larger batches: stay with these
    }
    reportsPerDraw_ = reports;
}

void Calculator::SetSegmentLength(int32 length) {
    segmentLength_ = length;
    portal_->TellObservers(kCalculatorSettingsChanged);
}

void Calculator::SetUpdatesPerSecond(int32 updates) {
    const auto wanted = static_cast<float>(updates);
    updatesPerSecond_ = wanted;
    measuringInterval_ =
        wanted < kSlowUpdates ? Truncate<int64>(kSlowInterval / wanted) : kInterval;
    portal_->TellObservers(kCalculatorSettingsChanged);
}

void Calculator::SetPace(Pace pace) {
    pace_ = pace;
    portal_->TellObservers(kCalculatorSettingsChanged);
}

AbEpoch* Calculator::GetEpoch() const {
    return portal_->FocusEpoch();
}

int32 Calculator::calc_entry(void* calculator) {
    return static_cast<Calculator*>(calculator)->CalcThread();
}

int32 Calculator::CalcThread() {
    float batches = 0.0f;
    bigtime_t start = 0;
    for (;;) {
        if (ShouldStop()) {
            if (!Park()) return 0;
            PrepareRun();
            start = real_time_clock_usecs();
            batches = 0.0f;
            cutBatches_ = 0;
        }
        const bool isPaced = BeginPicture();
        const int32 reports = RunBatch();
        if (isPaced) {
            // Its mail is about what is not seen before the batch's last picture.
            HandOverPictures(reports);
            start = real_time_clock_usecs();
            batches = 0.0f;
            cutBatches_ = 0;
            continue;
        }
        DeliverMail();
        AwaitConsumers();
        batches += 1.0f;
        const bigtime_t now = real_time_clock_usecs();
        if (now - start > measuringInterval_) {
            AdjustAnimationSpeed(batches, now - start);
            start = now;
            batches = 0.0f;
        }
        HandOver(reports);
    }
}

void Calculator::AwaitConsumers() {
    if (const int32 consumers = CountConsumers(); consumers > 0)
        acquire_ben(writeOk_.get(), consumers);
}

void Calculator::HandOver(int32 reports) {
    const PictureBatches::Piece batch{reports, batch_.Times(), batch_.Positions(),
                                      batch_.Velocities(), true};
    for (ReportConsumer* consumer : *consumers_) {
        Hand(consumer, batch);
        consumer->ReadOk();
    }
    DeliverMail();
}

// One that has no memory for a batch and cannot do without ends the run; the others get theirs.
void Calculator::Hand(ReportConsumer* consumer, const PictureBatches::Piece& piece) {
    try {
        consumer->ReadData(piece.reports, piece.times, piece.positions, piece.velocities);
    } catch (const std::bad_alloc&) {
        EndRun(RunEnding::Reason::kNoMemory);
    }
}

double Calculator::SecondsPerSecond() const {
    const Pace pace = pace_;
    if (pace.IsUnlimited()) return std::numeric_limits<double>::infinity();
    return pace.IsAuto() ? autoPace_.load() : pace.Number();
}

// While a run is held nothing has happened that would need another pace; when bodies have merged
// it has.
void Calculator::PreparePace() {
    pictures_.Times().SetOff();
    if (!pictures_.Times().HasClock()) return;
    if (!isHeldRun_ || pacedBodies_ != CountBodies()) autoPace_ = AutoPace(bodies_);
    pacedBodies_ = CountBodies();
}

// False: there is no pace to keep.
bool Calculator::BeginPicture() {
    PictureTimes& times = pictures_.Times();
    const bool wasPaced = times.IsOn();
    if (!times.SetPace(SecondsPerSecond(), UpdatesPerSecond())) {
        if (wasPaced) batchesPerUpdate_ = 1;
        return false;
    }
    if (wasPaced) return true;
    const ReadGuard guard(portal_);
    pictures_.Begin(portal_->FocusEpoch()->Time(), bodies_);
    return true;
}

// Those who do not show what they are given get their batch as it is, before it is cut.
void Calculator::HandOverPictures(int32 reports) {
    const PictureBatches::Piece batch{reports, batch_.Times(), batch_.Positions(),
                                      batch_.Velocities(), false};
    pictures_.Take(&batch_, reports);
    for (bool isFirst = true; pictures_.HasNext(); isFirst = false) {
        AwaitConsumers();
        pictures_.Times().Drawn();
        pictures_.Await(stop_);
        if (isFirst)
            for (ReportConsumer* consumer : *consumers_)
                if (!consumer->TakesPictures()) Hand(consumer, batch);
        const PictureBatches::Piece piece = pictures_.Next(stop_);
        batchesPerUpdate_ = piece.isShown ? 1 : kNoUpdate;
        for (ReportConsumer* consumer : *consumers_) {
            if (consumer->TakesPictures()) Hand(consumer, piece);
            consumer->ReadOk();
        }
    }
    DeliverMail();
}

// Without one of its bodies there is nothing to wait for any more.
void Calculator::PrepareCondition() {
    if (condition_ && !condition_->Begin(bodies_, isBackwards_)) EndAtGoal();
}

void Calculator::EndAtGoal() {
    condition_.reset();
    SetInternalPause();
    if (isGoalTold_) EndRun(RunEnding::Reason::kGoal);
}

void Calculator::EndRun(RunEnding::Reason reason) {
    RunEnding ending;
    ending.reason = reason;
    ending.time = timeBase_;
    EndRun(ending);
}

// False when the thread is to end.
bool Calculator::Park() {
    hasStoppedItself_ = stop_.internalPause.load();
    isRunning_ = false;
    portal_->TellObservers(kCalculatorParked);
    stop_.internalPause = false;
    release_ben(untilWaiting_.get());
    acquire_ben(iterateOk_.get());
    return !quit_;
}

void Calculator::PrepareRun() {
    {
        const WriteGuard guard(portal_);
        timeBase_ = portal_->FocusEpoch()->Time();
        try {
            Recache();
            PrepareCondition();
            PreparePace();
        } catch (const std::bad_alloc&) {
            EndRun(RunEnding::Reason::kNoMemory);
        }
    }
    limit_.Begin(isBackwards_);
    untilBatchEnd_ = 0;
    const int32 most = MostReports();
    for (ReportConsumer* consumer : *consumers_) {
        const ConsumerLock lock(consumer);
        try {
            if (lock.IsHeld()) consumer->PrepareForGo(most);
        } catch (const std::bad_alloc&) {
            EndRun(RunEnding::Reason::kNoMemory);
        }
    }
    isRunning_ = true;
}

int32 Calculator::RunBatch() {
    int32 reports = 0;
    {
        const WriteGuard guard(portal_);
        AbEpoch* const epoch = portal_->FocusEpoch();
        timeBase_ = epoch->Time();
        batch_.Clear();
        // What could not be prepared must not be used.
        if (!ending_) reports = TryToCalculate();
        untilBatchEnd_ -= reports;
        if (reports > 0) epoch->SetTime(timeBase_);
    }
    if (reports < reportsPerDraw_ && !ShouldStop()) cutBatches_++;
    return reports;
}

// Without memory the model stays where the batch began.
int32 Calculator::TryToCalculate() {
    const int64 steps = stepsTaken_;
    try {
        return Calculate();
    } catch (const std::bad_alloc&) {
        stepsTaken_ = steps;
        timeBase_ = portal_->FocusEpoch()->Time();
        collisions_.Discard();
        EndRun(RunEnding::Reason::kNoMemory);
        return 0;
    }
}

void Calculator::EndRun(const RunEnding& ending) {
    ending_ = ending;
    SetInternalPause();
}

int32 Calculator::KeepFiniteReports(int32 made) {
    const int32 reports = batch_.CountFinite();
    stepsTaken_ -= made - reports;
    timeBase_ = reports > 0 ? TRep()[reports - 1] : GetEpoch()->Time();
    return reports;
}

// Only now, without the model lock: a full port may stay full until the target gets that lock. Once
// someone waits for the thread to park there is no sense in insisting: the step was not taken, and
// the next run finds the same again.
void Calculator::DeliverMail() {
    while (!PostMail()) {
        if (stop_.pauseCount != 0) {
            collisions_.Discard();
            ending_.reset();
            return;
        }
        snooze(kPostRetryInterval);
    }
}

// False if the target's port is full, or there is no memory for a message.
bool Calculator::PostMail() {
    try {
        return (collisions_.IsEmpty() || collisions_.Post(target_)) && PostEnding();
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// False if the target's port is full.
bool Calculator::PostEnding() {
    if (!ending_) return true;
    const BMessage message = ending_->ToMessage();
    if (target_ != nullptr && target_->PostMessage(&message, target_) == B_WOULD_BLOCK)
        return false;
    ending_.reset();
    return true;
}
