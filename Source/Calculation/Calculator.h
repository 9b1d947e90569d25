// The integration engine of one simulation, without its mathematics: the calculation thread, the
// batches of reports it hands to the consumers, its pacing, its pauses and the collisions it mails.
// Owned by the document; made and destroyed on the document's thread, destroyed only while parked.
//
// Threads. "Master Calculation Thread" parks or runs batches: a batch of reports under the model's
// write lock; then, without it, waiting until every consumer has finished the former batch, and
// handing over. It never sleeps on a timer: consumers hold it back, and the pacing gives a batch
// the size that makes `UpdatesPerSecond` batches a second. Only at a pace (SetClock) batches end
// with a picture and are handed over when it is due; a Pause is waiting for nothing then. Pause,
// UnPause, the setters and SetRunLimit may be called from any thread but this one; what else is
// called from other threads only while the calculator is parked, or under the model lock where it
// says so.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Calculation/CollisionMailbox.h"
#include "Calculation/PictureBatches.h"
#include "Calculation/ReportBatch.h"
#include "Calculation/RunCondition.h"
#include "Calculation/RunEnding.h"
#include "Calculation/RunLimit.h"
#include "Calculation/StopFlags.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/Benaphore.h"

class AbEpoch;
class BLooper;
class Body;
class EpochPortal;
class MotionWatcher;
class Ranks;
class ReportConsumer;

class Calculator : public AbCalculator {
public:
    // None of these is owned. The list of consumers changes only while the calculator is parked.
    // The target is posted the collisions, and why a run has ended by itself; without one a run
    // simply stops. Returns when the thread has parked; throws std::system_error when there can be
    // no thread.
    Calculator(EpochPortal* portal, const std::vector<ReportConsumer*>* consumers, BLooper* target);
    ~Calculator() override;
    Calculator(const Calculator&) = delete;
    Calculator& operator=(const Calculator&) = delete;

    // Under the model lock, as all that touches the state between two batches.
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;
    // Re-reads the bodies and the settings of the focus epoch: a run starts. Under the write lock.
    virtual void Recache();
    // Advances the system by at most MostReports() reports, and fewer if it should stop or has been
    // at it for a tenth of a second; returns how many it made. Calculation thread, under the write
    // lock.
    virtual int32 Calculate() = 0;
    // Takes over the state that Archive wrote; nothing for null or for what is no such record.
    virtual void Regenerate(BMessage* archive);
    // The next run begins at an epoch of which no state is kept: in it no pair has met yet. Under
    // the write lock, while parked.
    virtual void ForgetPassed() {}

    // The run that is held, as one record from which ResumeRun takes it up: the fields of Archive,
    // more of the integrator and those of RunLeft. B_NOT_ALLOWED: there is none. Under the model
    // lock, while parked.
    [[nodiscard]] virtual status_t ArchiveRun(BMessage* into) const = 0;
    // The next UnPause(true) goes on with that run, to the same bits as if it had been held. The
    // focus epoch must be as it was then: B_BAD_DATA otherwise, and nothing of the record is taken.
    // Under the write lock, while parked.
    [[nodiscard]] virtual status_t ResumeRun(const BMessage& archive) = 0;
    // Runs that were begun since the calculator was made; one that was held and goes on is none.
    // For consumers, in PrepareForGo.
    [[nodiscard]] virtual int64 RunsBegun() const = 0;

    // What the last run used of that which its epoch asks for. Under the model lock.
    [[nodiscard]] virtual int32 OrderInUse() const = 0;
    [[nodiscard]] virtual double CutoffInUse() const = 0;
    // Not owned, and there as long as the calculator runs. While parked.
    virtual void AddWatcher(MotionWatcher* watcher) = 0;
    // Threads that share the force evaluation; 0: as many as the machine has processors. While
    // parked.
    virtual void SetThreads(int32 threads) = 0;
    // Processes that share it; null (not owned): none. While parked.
    virtual void SetRanks(Ranks* ranks) = 0;

    // Pauses nest: a new calculator is paused once, and runs while every Pause has its UnPause.
    // Returns when the thread has parked and every consumer has finished its last batch; at once if
    // it was paused already.
    void Pause();
    // The last UnPause starts a run; or lets the one go on that was held, `isHeldRun`: if nothing
    // of the model has changed meanwhile, its results are as if it had never been held.
    void UnPause(bool isHeldRun = false);
    // Parks the thread without touching the pause count; the next UnPause starts another run.
    void SetInternalPause();
    [[nodiscard]] bool ShouldStop() const { return stop_.ShouldStop(); }

    // The next run stops itself as if by SetInternalPause at the report that ends its `steps`-th
    // step, or at the first one at or past `time` (s; RunLimit.h), whatever the batches are. 0 and
    // +infinity: no limit. A run that is paused or that collides goes on counting when it is
    // resumed; a limit holds once.
    void SetRunLimit(int64 steps, double time) { limit_.Set({steps, time}); }
    // Likewise where that is met (RunCondition.h); none: at nothing else. While parked.
    void SetRunCondition(std::optional<RunCondition> condition) {
        condition_ = std::move(condition);
    }
    // Whether the target is told that a run stops at its limit or condition (RunEnding::kGoal).
    // While parked.
    void SetGoalIsTold(bool isTold) { isGoalTold_ = isTold; }

    // The next run that starts, and those after it, go back in time; they do not where the method
    // cannot.
    void SetBackwards(bool isBackwards) { isBackwards_ = isBackwards; }
    [[nodiscard]] bool IsBackwards() const { return isBackwards_; }

    // The batch with the `reports`-th report from now on ends with it, so that a consumer sees the
    // calculator just there. For consumers, on the calculation thread, in PrepareForGo and
    // ReadData; holds once.
    void EndBatchAfter(int64 reports) { untilBatchEnd_ = reports; }

    // Why the calculator has parked: by itself, as after the last report or at a collision, and not
    // because it was paused. While parked.
    [[nodiscard]] bool HasStoppedItself() const { return hasStoppedItself_; }

    // Sets the size of the next batches from the number of batches handed over in `elapsed`
    // microseconds. Calculation thread.
    void AdjustAnimationSpeed(float batches, int64 elapsed);
    // Reports that a batch should hold. One that takes too long or too much memory is cut: then the
    // number does not grow, and consumers get more batches than they need show.
    [[nodiscard]] int32 ReportsPerDraw() const { return reportsPerDraw_; }
    [[nodiscard]] int32 BatchesPerUpdate() const override { return batchesPerUpdate_; }
    [[nodiscard]] bool IsRunning() const override { return isRunning_; }

    // Kept for the displays, which draw trails in segments of so many reports.
    [[nodiscard]] int32 SegmentLength() const override { return segmentLength_; }
    void SetSegmentLength(int32 length) override;
    [[nodiscard]] int32 UpdatesPerSecond() const override {
        return static_cast<int32>(updatesPerSecond_.load());
    }
    // Positive.
    void SetUpdatesPerSecond(int32 updates) override;
    [[nodiscard]] int64 MeasuringInterval() const { return measuringInterval_; }

    // Runs keep their pace by this clock (not owned); without one they run as fast as possible.
    // While parked.
    void SetClock(PaceClock* clock) { pictures_.Times().SetClock(clock); }
    [[nodiscard]] Pace GetPace() const override { return pace_; }
    void SetPace(Pace pace) override;
    [[nodiscard]] double SecondsPerSecond() const override;
    [[nodiscard]] bool IsBehindPace() const override { return pictures_.Times().IsBehind(); }

    [[nodiscard]] double Cutoff() const { return cutoff_; }
    // The time of the last report, s. Under the model lock, as all that a batch changes.
    [[nodiscard]] double TBase() const { return timeBase_; }
    // Steps since the calculator was made. Under the model lock, or by a consumer that is handed a
    // batch: then it is those of this batch and all before.
    [[nodiscard]] int64 StepsTaken() const { return stepsTaken_; }
    [[nodiscard]] const double* TRep() const { return batch_.Times(); }
    [[nodiscard]] const double* RRep() const { return batch_.Positions(); }
    [[nodiscard]] const double* VRep() const { return batch_.Velocities(); }
    [[nodiscard]] int32 CountBodies() const { return static_cast<int32>(bodies_.size()); }
    [[nodiscard]] int32 CountMassiveBodies() const { return massiveBodies_; }
    // In mass order; no range check.
    [[nodiscard]] Body* BodyAt(int32 index) const {
        return bodies_[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] AbEpoch* GetEpoch() const;
    // For consumers to release: the calculator waits for one unit from each of them.
    [[nodiscard]] Benaphore* WriteOk() const { return writeOk_.get(); }

protected:
    [[nodiscard]] const std::vector<Body*>& Bodies() const { return bodies_; }
    // Reports that a batch may hold.
    [[nodiscard]] int32 MostReports() const;
    // The time at which the run is to stop, s; NaN if at none.
    [[nodiscard]] double TimeLimit() const { return limit_.Time(); }
    // What it is to stop at beside that.
    [[nodiscard]] const std::optional<RunCondition>& Condition() const { return condition_; }
    // The batch reaches the next picture, and is to end.
    [[nodiscard]] bool IsPictureReached() const { return pictures_.Times().IsReached(timeBase_); }
    // What is left until it stops.
    [[nodiscard]] RunLeft Left() const { return limit_.Left(); }
    // For Recache: the run that was held goes on.
    [[nodiscard]] bool IsHeldRun() const { return isHeldRun_; }
    // What an integrator polls between its steps, or within them.
    [[nodiscard]] const StopFlags& Stop() const { return stop_; }
    // Records one report (time in s), with the number of steps that were completed since the one
    // before, and parks the run if it is the last one of the run's limit.
    void Report(double time, const BodyArrays& bodies, int32 steps) {
        ReportContact(time, bodies, steps);
        if (limit_.Reached(steps, time) || (condition_ && condition_->Reached(bodies))) EndAtGoal();
    }
    // The same where bodies touch: it counts for no limit.
    void ReportContact(double time, const BodyArrays& bodies, int32 steps) {
        batch_.Add(time, bodies);
        timeBase_ = time;
        stepsTaken_ += steps;
    }
    // Notes a pair that touches, by identifiers: the later body in mass order first.
    void AddCollision(int64 later, int64 earlier) { collisions_.Add(later, earlier); }
    // The run goes no further: parks it and has the noted pairs posted to the target.
    void PostCollision() { SetInternalPause(); }
    // The run cannot go on, or need not: parks it and has the target told why.
    void EndRun(const RunEnding& ending);
    // Drops the reports of the batch from the first on that is not finite, and a step for each of
    // the `made` reports that go; returns how many stay. The time base is that of the last of them,
    // or of the batch's start.
    int32 KeepFiniteReports(int32 made);

private:
    struct DeleteBen {
        void operator()(Benaphore* ben) const { delete_ben(ben); }
    };
    using OwnedBen = std::unique_ptr<Benaphore, DeleteBen>;

    static int32 calc_entry(void* calculator);
    int32 CalcThread();
    bool Park();
    void PrepareRun();
    int32 RunBatch();
    int32 TryToCalculate();
    void PrepareCondition();
    void EndAtGoal();
    void PreparePace();
    bool BeginPicture();
    void AwaitConsumers();
    void HandOver(int32 reports);
    void HandOverPictures(int32 reports);
    void Hand(ReportConsumer* consumer, const PictureBatches::Piece& piece);
    // At the last report.
    void EndRun(RunEnding::Reason reason);
    void DeliverMail();
    bool PostMail();
    bool PostEnding();
    [[nodiscard]] int32 CountConsumers() const { return static_cast<int32>(consumers_->size()); }

    BLooper* const target_;
    const OwnedBen iterateOk_;     // the parked thread waits for it
    const OwnedBen untilWaiting_;  // released by the thread whenever it parks
    const OwnedBen writeOk_;       // one unit for each consumer that has finished the last batch
    EpochPortal* const portal_;
    std::vector<Body*> bodies_;  // of the focus epoch, in mass order
    const std::vector<ReportConsumer*>* const consumers_;
    ReportBatch batch_;
    PictureBatches pictures_;
    double cutoff_ = 1e-11;
    double timeBase_ = 0.0;
    int64 stepsTaken_ = 0;
    int32 massiveBodies_ = 0;
    std::atomic<int32> reportsPerDraw_{100};
    std::atomic<int32> batchesPerUpdate_{1};
    std::atomic<bool> isRunning_{false};
    int32 cutBatches_ = 0;     // since the pacing looked last
    int64 untilBatchEnd_ = 0;  // reports; 0 or less: no such end is wanted
    std::atomic<int32> segmentLength_{2};
    std::atomic<float> updatesPerSecond_{80.0f};
    std::atomic<int64> measuringInterval_{1'000'000};
    std::atomic<Pace> pace_{Pace()};
    std::atomic<double> autoPace_{0.0};  // of this run; 0: none was yet
    int32 pacedBodies_ = 0;              // those that it was chosen for
    std::atomic<bool> quit_{false};
    std::atomic<bool> isHeldRun_{false};
    std::atomic<bool> isBackwards_{false};
    std::atomic<bool> hasStoppedItself_{false};
    StopFlags stop_;
    CollisionMailbox collisions_;
    std::optional<RunEnding> ending_;
    RunLimit limit_;
    std::optional<RunCondition> condition_;
    bool isGoalTold_ = false;
    const thread_id thread_;  // last: it waits to be resumed, but is there
};

// The calculator that documents have, or another one of its kind (TaylorCalculator.h).
[[nodiscard]] std::unique_ptr<Calculator> MakeCalculator(
    EpochPortal* portal, const std::vector<ReportConsumer*>* consumers, BLooper* target);
