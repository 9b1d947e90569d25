// The calculator that integrates by Taylor series of fixed order (2, 3 or 4): one step a report, of
// a length that the fastest pair of bodies sets for all. Who owns it and which threads call it:
// Calculator.h.
//
// Results are the same bits whatever the number of threads and the size of the batches.
#pragma once

#include "Calculation/Calculator.h"
#include "Calculation/ForceEvaluator.h"
#include "Calculation/StepControl.h"
#include "Calculation/TaylorParts.h"

class TaylorCalculator final : public Calculator {
public:
    TaylorCalculator(EpochPortal* portal, const std::vector<ReportConsumer*>* consumers,
                     BLooper* target);

    // The fields "IDs", "DelR", "DelV", "Iter" and "MaxOrd".
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;
    void Recache() override;
    int32 Calculate() override;
    void Regenerate(BMessage* archive) override;

    // The run that is held, as one record from which ResumeRun takes it up: the fields of Archive
    // and of RunState. B_NOT_ALLOWED: there is none. Under the model lock, while parked.
    [[nodiscard]] status_t ArchiveRun(BMessage* into) const;
    // The next UnPause(true) goes on with that run, to the same bits as if it had been held. The
    // focus epoch must be as it was then: B_BAD_DATA otherwise, and nothing of the record is taken.
    // Under the write lock, while parked.
    [[nodiscard]] status_t ResumeRun(const BMessage& archive);

    // Threads that share the force evaluation; 0: as many as the machine has processors. While
    // parked.
    void SetThreads(int32 threads) { evaluator_.SetThreads(threads); }

private:
    void AnchorTime();
    void StartSteps();
    // The model is as this calculator left it.
    [[nodiscard]] bool IsUntouched() const;
    void LoadBodies();
    void ComputeKissDist();
    void StoreBodies() const;
    [[nodiscard]] bool IsFinite() const;
    // Makes the batch's reports, and returns how many.
    int32 MakeReports();
    // These make the next report. False: there is none to make, and the batch ends.
    bool ReportCollision();
    bool ReportStep();
    bool ReportStraight();
    void TakeStep();
    // Goes back to the last report whose numbers are finite, and ends the run there; returns how
    // many reports of the batch are left.
    int32 EndAtFiniteReport();
    void EndRun(RunEnding::Reason reason);

    // During a batch the bodies' state lives here. Body objects are written at the end of it: the
    // write lock is held until then, so nobody can see them earlier.
    ForceEvaluator evaluator_;
    BodyArrays arrays_{};  // of the evaluator
    TaylorParts parts_;
    StepControl step_;
    int32 order_ = 4;
    const AbEpoch* epoch_ = nullptr;  // of the last run; only compared
    double runCutoff_ = 0.0;
    int32 loadedBodies_ = 0;
    int32 iteration_ = 0;  // steps since the last promotion; stays at the greatest number
    // Reports are at anchor + elapsed: the sum of the steps of the whole run, not a running sum of
    // times and not of the steps of a batch, whose size follows the clock.
    bool anchored_ = false;
    double anchor_ = 0.0;
    double elapsed_ = 0.0;
    double lastReport_ = 0.0;
};
