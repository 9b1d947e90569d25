// The method for orders 2, 3 and 4. All bodies take the same steps, whose length follows from the
// fastest pair, and each step ends with a report. A step cannot end at a given time: the first
// report at or past that time has to do. Bodies that touch are found at the beginning of a step,
// which is then not taken. While bodies pass through each other they attract as points do.
#pragma once

#include "Calculation/ForceEvaluator.h"
#include "Calculation/Integrator.h"
#include "Calculation/PassedPairs.h"
#include "Calculation/StepControl.h"
#include "Calculation/TaylorParts.h"

class LowOrderIntegrator final : public Integrator {
public:
    // Takes what is too low as the lowest order.
    [[nodiscard]] std::optional<int32> OrderFor(int32 asked) const override;
    [[nodiscard]] bool IsContinuous() const override { return false; }
    [[nodiscard]] int32 OrderInUse() const override { return order_; }
    [[nodiscard]] double CutoffInUse() const override { return cutoff_; }
    void SetThreads(int32 threads) override { evaluator_.SetThreads(threads); }
    void SetRanks(Ranks* ranks) override { evaluator_.SetRanks(ranks); }

    [[nodiscard]] BodyRows MakeRoom(int32 bodies, int32 massive) override;
    void Begin(const Start& start) override;
    [[nodiscard]] Progress Advance(double until, const StopFlags& stop) override;
    [[nodiscard]] double Time() const override { return anchor_ + elapsed_; }
    void SetTime(double time) override;
    [[nodiscard]] const std::vector<CollidingPair>& Contacts() const override {
        return contacts_.empty() ? evaluator_.Collisions() : contacts_;
    }
    void PassContacts() override { passed_.Add(Contacts()); }
    void ForgetPassed() override { passed_.Clear(); }

    [[nodiscard]] status_t Archive(BMessage* into) const override;
    static void DescribeFields(FieldDescriptions* into);
    void Regenerate(const BMessage* archive) override;
    // The fields of RunState.
    [[nodiscard]] status_t ArchiveRun(BMessage* into) const override;
    [[nodiscard]] status_t ResumeRun(const BMessage& archive, const Start& start) override;

private:
    void StartSteps(const Start& start);
    [[nodiscard]] Outcome Evaluate(const StopFlags& stop);
    [[nodiscard]] Outcome EvaluateAsPoints(const StopFlags& stop);
    [[nodiscard]] Progress GoStraight(double until);
    void TakeStep();

    ForceEvaluator evaluator_;  // the bodies' state lives in its arrays
    PassedPairs passed_;
    std::vector<CollidingPair> contacts_;  // of such as do not pass, if some pass
    std::vector<double> radii_;            // m, put aside
    TaylorParts parts_;
    StepControl step_;
    int32 order_ = 4;
    double cutoff_ = 0.0;
    int32 iteration_ = 0;  // steps since the last promotion; stays at the greatest number
    // Reports are at anchor + elapsed: the sum of the steps of the whole run, not a running sum of
    // times and not of the steps of a batch, whose size follows the clock.
    double anchor_ = 0.0;   // s
    double elapsed_ = 0.0;  // s
};
