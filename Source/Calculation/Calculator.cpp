#include "Calculation/Calculator.h"

#include <algorithm>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include "Calculation/ReportConsumer.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BLooper.h"
#include "Platform/Application/BMessage.h"

namespace {

// A consumer's lock for the length of a block.
class ConsumerLock {
public:
    explicit ConsumerLock(ReportConsumer* consumer)
        : consumer_(consumer), isHeld_(consumer->LockConsumer()) {}
    ~ConsumerLock() {
        if (isHeld_) consumer_->UnlockConsumer();
    }
    ConsumerLock(const ConsumerLock&) = delete;
    ConsumerLock& operator=(const ConsumerLock&) = delete;

    [[nodiscard]] bool IsHeld() const { return isHeld_; }

private:
    ReportConsumer* const consumer_;
    const bool isHeld_;
};

constexpr int32 kLeastReportsPerDraw = 10;
// Of the wanted number of batches, without a change of their size.
constexpr float kDeadBandBelow = 0.9f;
constexpr float kDeadBandAbove = 1.1f;
constexpr float kSecondsPerMicrosecond = 1e-6f;
// Below this many updates a second the pacing measures over five of them, else over a second.
constexpr float kSlowUpdates = 5.0f;
constexpr float kSlowInterval = 5'000'000.0f;
constexpr int64 kInterval = 1'000'000;
// Between two attempts to post to a full port.
constexpr bigtime_t kPostRetryInterval = 100'000;

// Truncates toward zero; what the integer cannot hold becomes its least value, as the processor's
// own conversion has it.
template <class Integer>
Integer Truncate(float value) {
    constexpr auto kBound = -static_cast<float>(std::numeric_limits<Integer>::min());
    return value >= -kBound && value < kBound ? static_cast<Integer>(value)
                                              : std::numeric_limits<Integer>::min();
}

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
    // Upwards only; there is deliberately no such nudge downwards.
    if (reports == former && batches > target) reports++;
    reports = std::max(reports, kLeastReportsPerDraw);
    // Only the arrays grow. Re-reading the model here would restart the step, and the results would
    // depend on the clock. The consumers have yet to get the batch that the arrays hold.
    if (reports > former && areCut) return;  // larger ones would be cut likewise
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
        const int32 reports = RunBatch();
        DeliverMail();
        const int32 consumers = CountConsumers();
        if (consumers > 0) acquire_ben(writeOk_.get(), consumers);

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

// One that has no memory for a batch and cannot do without ends the run; the others get theirs.
void Calculator::HandOver(int32 reports) {
    for (ReportConsumer* consumer : *consumers_) {
        try {
            consumer->ReadData(reports, batch_.Times(), batch_.Positions(), batch_.Velocities());
        } catch (const std::bad_alloc&) {
            EndWithoutMemory();
        }
        consumer->ReadOk();
    }
    DeliverMail();
}

void Calculator::EndWithoutMemory() {
    RunEnding ending;
    ending.reason = RunEnding::Reason::kNoMemory;
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
        isRunning_ = true;
        timeBase_ = portal_->FocusEpoch()->Time();
        try {
            Recache();
        } catch (const std::bad_alloc&) {
            EndWithoutMemory();
        }
    }
    limit_.Begin();
    untilBatchEnd_ = 0;
    const int32 most = MostReports();
    for (ReportConsumer* consumer : *consumers_) {
        const ConsumerLock lock(consumer);
        try {
            if (lock.IsHeld()) consumer->PrepareForGo(most);
        } catch (const std::bad_alloc&) {
            EndWithoutMemory();
        }
    }
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
        EndWithoutMemory();
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

int32 Calculator::CountConsumers() const {
    return static_cast<int32>(consumers_->size());
}
