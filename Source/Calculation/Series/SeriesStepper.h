// Moves all bodies step by step by Taylor series of high order, which are the motion itself
// between two steps. Knows nothing of documents, batches and reports. Owned by a calculator and
// used by one thread at a time.
//
// States are carried as sums of two numbers. A step is as long as the last two terms of every body
// allow, against the second and third: whatever moves along with all bodies counts for
// nothing. Results are the same bits whatever the number of threads and the instruction set; a run
// that is restarted from a SeriesPlace goes on to the same bits.
#pragma once

#include <optional>

#include "Calculation/Series/SeriesForces.h"
#include "Calculation/Series/SeriesStep.h"
#include "Calculation/Series/SeriesStore.h"
#include "Calculation/StopFlags.h"
#include "Platform/Support/SupportDefs.h"

// Where the next step begins, but for the bodies' states.
struct SeriesPlace {
    SplitTime time;
    // s, that of the step's series; a power of two. 0, with the sign of its direction: a run
    // starts, and its first step has yet to choose one.
    double scale = 0.0;
    double length = 0.0;  // s, of the last step; 0: there was none
};

class SeriesStepper {
public:
    enum class Result {
        kDone,
        kStopped,      // given up halfway; nothing has changed
        kNotFinite,    // after this some number would not be finite
        kTimeStands,   // the step is too short to change the time
        kNothingPulls  // every body moves straight on for ever
    };

    // 0 threads: as many as the machine has processors, within a bound.
    explicit SeriesStepper(int32 threads = 0);
    SeriesStepper(const SeriesStepper&) = delete;
    SeriesStepper& operator=(const SeriesStepper&) = delete;

    void SetThreads(int32 threads) { forces_.SetThreads(threads); }
    void SetRanks(Ranks* ranks) { forces_.SetRanks(ranks); }
    // For tests and benchmarks; false when the processor has none such.
    bool SetInstructionSet(InstructionSet set) { return forces_.SetInstructionSet(set); }

    // Room for N bodies in mass order, the first M of which are massive. The order that is used is
    // that of SeriesForces::OrderFor.
    void Resize(int32 order, int32 bodies, int32 massive);
    [[nodiscard]] int32 Order() const { return store_.Arrays().order; }
    [[nodiscard]] int32 CountBodies() const { return store_.Arrays().bodies; }
    [[nodiscard]] int32 CountMassive() const { return store_.Arrays().massive; }

    // Where a body is when the next step begins; the low numbers are 0. GM in m3/s2.
    void SetBody(int32 body, const ThreeVector& position, const ThreeVector& velocity, double gm);
    // The low numbers, after SetBody.
    void SetLow(int32 body, const ThreeVector& position, const ThreeVector& velocity);
    // A run starts, once all bodies are set. `tolerance`: relative, 1e-16 to 1e-6.
    void Start(double tolerance, double time, bool backwards = false);
    // It goes on from where its next step was to begin.
    void Resume(double tolerance, const SeriesPlace& place);

    // Makes the next step. Only kDone changes anything.
    [[nodiscard]] Result MakeStep(const StopFlags& stop);
    // The step that was made; none before the first, and after any other result.
    [[nodiscard]] const SeriesStep& Step() const { return step_; }
    [[nodiscard]] bool HasStep() const { return hasStep_; }
    // Places and velocities of all bodies at `theta` scales from the step's start.
    void Evaluate(double theta, SplitStates* states) {
        if (hasStep_ && theta == step_.Theta())
            *states = end_;
        else
            store_.Evaluate(forces_.Instance(), theta, states);
    }

    // For the search for contacts within the step.
    [[nodiscard]] const SeriesStore& Store() const { return store_; }
    [[nodiscard]] const SeriesInstance& Kernels() const { return forces_.Instance(); }

    // What the step that was made began with; that of the next one, when there is none.
    [[nodiscard]] const SeriesPlace& Place() const { return place_; }
    [[nodiscard]] const SplitStates& Begin() const { return begin_; }
    [[nodiscard]] const SplitStates& End() const { return end_; }
    [[nodiscard]] double GM(int32 body) const { return store_.GM(body); }

private:
    void FillEmptySlots();
    void BeginNext();
    // False: given up halfway.
    [[nodiscard]] bool ChooseScale(const StopFlags& stop);
    // Of all pairs, in 1/s2; none: given up halfway.
    [[nodiscard]] std::optional<double> FastestRate(const StopFlags& stop) const;
    [[nodiscard]] double RateOf(int32 later, int32 earlier) const;
    [[nodiscard]] double StepLength(const SeriesEnd& end) const;

    SeriesForces forces_;
    SeriesStore store_;
    SplitStates begin_;
    SplitStates end_;
    SeriesPlace place_;
    SeriesStep step_;
    bool hasStep_ = false;
    double cutoff_ = 0.0;
    double logTolerance_ = 0.0;
};
