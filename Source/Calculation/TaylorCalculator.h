// The calculator that a document has: it integrates by Taylor series, with the method that there is
// for the order of the focus epoch (Integrator.h). Calculator.h says who owns it and which
// threads call it.
//
// Results are the same bits whatever the number of threads and the size of the batches.
#pragma once

#include <memory>

#include "Calculation/Calculator.h"
#include "Calculation/Integrator.h"
#include "Calculation/MotionWatcher.h"
#include "Calculation/RunBodies.h"
#include "Model/Epochs/EpochLimits.h"

class TaylorCalculator final : public Calculator {
public:
    TaylorCalculator(EpochPortal* portal, const std::vector<ReportConsumer*>* consumers,
                     BLooper* target);

    // The fields of the integrator.
    [[nodiscard]] status_t Archive(BMessage* into, bool deep = true) const override;
    void Recache() override;
    int32 Calculate() override;
    void Regenerate(BMessage* archive) override;
    void ForgetPassed() override;

    [[nodiscard]] status_t ArchiveRun(BMessage* into) const override;
    [[nodiscard]] status_t ResumeRun(const BMessage& archive) override;
    [[nodiscard]] int64 RunsBegun() const override { return runsBegun_; }
    [[nodiscard]] int32 OrderInUse() const override { return integrator_->OrderInUse(); }
    [[nodiscard]] double CutoffInUse() const override { return integrator_->CutoffInUse(); }
    void AddWatcher(MotionWatcher* watcher) override;
    void SetThreads(int32 threads) override;
    void SetRanks(Ranks* ranks) override;

private:
    void ChooseIntegrator();
    [[nodiscard]] Integrator::Start StartAt(double time) const;
    void NoteRun();
    void TellBodies();
    // The model is as this calculator left it.
    [[nodiscard]] bool IsUntouched() const;
    void LoadBodies();
    void TakeRadii();
    // Makes the batch's reports, and returns how many.
    int32 MakeReports();
    // Makes the next report. False: there is none to make, and the batch ends.
    bool MakeReport();
    // Where the motion that is known meets the run's condition the report is there.
    bool GoBackToCondition();
    [[nodiscard]] double EndOfStraightWay() const;
    bool ReportCollision(int32 steps);
    void EndAtContact(int32 steps);
    void TellMotion(double from) const;
    bool ReportStraight(int32 steps);
    // Goes back to the last report whose numbers are finite, and ends the run there; returns how
    // many of the reports that were made are left.
    int32 EndAtFiniteReport(int32 made);
    void EndRun(RunEnding::Reason reason);

    std::unique_ptr<Integrator> integrator_;
    RunBodies bodies_;  // in the integrator's arrays
    std::vector<MotionWatcher*> watchers_;
    bool knowBodies_ = true;  // the watchers, those of the run that goes on
    int32 threads_ = 0;
    Ranks* ranks_ = nullptr;
    int32 onContact_ = kContactMerges;
    int64 runsBegun_ = 0;
    // Of the last run; only compared.
    const AbEpoch* epoch_ = nullptr;  // null: there is none that could go on
    int32 order_ = 0;
    double runCutoff_ = 0.0;
};
