// The method for orders from 5: Taylor series of order 8, 12, 16, 20 or 24, which are the motion
// itself between two steps (SeriesStepper.h). Steps are as long as the cutoff, their relative
// tolerance, allows; each is reported in as many equal parts as its paths bend. Reports may lie
// anywhere in a step, and what follows does not depend on where a run was stopped. Bodies touch
// when their series say so, and the run stands there.
//
// A run goes on within its step, to the same bits, if its bodies' places, velocities and time are
// the very numbers of the last report.
#pragma once

#include "Calculation/Integrator.h"
#include "Calculation/Series/SeriesContacts.h"
#include "Calculation/Series/SeriesRecord.h"
#include "Calculation/Series/SeriesStepper.h"
#include "Calculation/Series/StraightStep.h"

class SeriesIntegrator final : public Integrator {
public:
    [[nodiscard]] std::optional<int32> OrderFor(int32 asked) const override;
    [[nodiscard]] bool IsContinuous() const override { return true; }
    [[nodiscard]] int32 OrderInUse() const override { return stepper_.Order(); }
    [[nodiscard]] double CutoffInUse() const override { return cutoff_; }
    void SetThreads(int32 threads) override { stepper_.SetThreads(threads); }
    void SetRanks(Ranks* ranks) override { stepper_.SetRanks(ranks); }

    [[nodiscard]] BodyRows MakeRoom(int32 bodies, int32 massive) override;
    void Begin(const Start& start) override;
    [[nodiscard]] Progress Advance(double until, const StopFlags& stop) override;
    [[nodiscard]] double Time() const override { return time_; }
    void SetTime(double time) override;
    [[nodiscard]] const std::vector<CollidingPair>& Contacts() const override {
        return overlaps_.empty() ? contacts_.Pairs() : overlaps_;
    }
    void PassContacts() override;
    void ForgetPassed() override;
    [[nodiscard]] std::optional<Motion> LastMotion() const override;
    void GoBackTo(double theta) override;

    // The fields of SeriesRecord.
    [[nodiscard]] status_t Archive(BMessage* into) const override;
    void Regenerate(const BMessage* archive) override;
    [[nodiscard]] status_t ArchiveRun(BMessage* into) const override;
    [[nodiscard]] status_t ResumeRun(const BMessage& archive, const Start& start) override;

private:
    void Take(const Start& start);
    void StartAfresh();
    // Whether it stands there, if that is known without making the step again: none if it is not.
    [[nodiscard]] std::optional<bool> TakeUp(const SeriesRecord& record);
    void TakePassed(const SeriesRecord& record);
    // Makes that step; none: given up halfway.
    [[nodiscard]] std::optional<bool> MakeStepAgain(const SeriesRecord& record,
                                                    const StopFlags& stop);
    // False: given up halfway.
    [[nodiscard]] bool TakeUpAwaited(const StopFlags& stop);
    [[nodiscard]] SeriesRecord Record() const;
    [[nodiscard]] SeriesStepper::Result MakeStep(const StopFlags& stop);
    [[nodiscard]] Progress Fail(SeriesStepper::Result result, double until);
    [[nodiscard]] Progress GoStraight(double until);
    void GoBackOnStraightWay(double theta);
    void SetRadii();
    // False: given up halfway.
    [[nodiscard]] bool FindContacts(const StopFlags& stop);
    // Of what stands in the rows, m: how far apart they are (squared), and how far when they touch.
    [[nodiscard]] double SquaredDistance(const CollidingPair& pair) const;
    [[nodiscard]] double Reach(const CollidingPair& pair) const;
    void FindOverlaps();
    // Stands there.
    void MoveTo(double theta, double time);
    [[nodiscard]] bool RowsAre(const SplitStates& states) const;
    // Of two times the second comes later on the way that the run goes.
    [[nodiscard]] bool IsAhead(double time, double other) const {
        return isBackwards_ ? other < time : other > time;
    }

    SeriesStepper stepper_;
    SeriesContacts contacts_;
    SplitStates now_;  // of the last report
    std::vector<double> numbers_;
    BodyRows rows_;  // in numbers_
    int32 order_ = 0;
    double cutoff_ = 0.0;
    double time_ = 0.0;
    bool isBackwards_ = false;
    bool passesContacts_ = false;
    double theta_ = 0.0;                    // the last report's place in the step
    double thetaBefore_ = 0.0;              // that of the report before it, if in this step
    std::optional<StraightStep> straight_;  // the last report's way, where nothing pulls
    bool isSearched_ = false;               // this step, for contacts
    bool hasContact_ = false;               // in it, at contacts_.Theta()
    std::vector<CollidingPair> overlaps_;   // where a step failed
    std::vector<int64> ids_;
    bool runs_ = false;
    SeriesRecord kept_;     // for the next Begin
    SeriesRecord awaited_;  // goes on from there if that is where it stands: the next step tells
};
