// The bodies' positions and velocities as sums of several parts, which keep the digits that
// millions of small steps would lose. They are what the integrator saves with an epoch, and go on
// from run to run as long as nobody edits the body. Owned by a TaylorCalculator, changed on its
// thread.
#pragma once

#include <vector>

#include "Calculation/SplitVectors.h"
#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
class Body;
class ForceEvaluator;
struct StepPowers;

class TaylorParts {
public:
    static constexpr int32 kPositionParts = 5;
    static constexpr int32 kVelocityParts = 4;

    // Makes the parts those of `bodies`, in their order. A body keeps what it had as far as that
    // still adds up to its position and to its velocity; else it starts from the plain value.
    void ResortDels(const std::vector<Body*>& bodies);

    // The parts are those of these bodies, in their order.
    [[nodiscard]] bool AreOf(const std::vector<Body*>& bodies) const;

    // Moves the bodies, whose state and derivatives the evaluator holds, by one step of the series
    // of that order (2 ... 4).
    void Advance(int32 order, const StepPowers& powers, ForceEvaluator* bodies);
    // Moves them straight on for so many seconds.
    void MoveStraight(double seconds, ForceEvaluator* bodies);
    // Moves what has gathered in each part one part down, towards the base.
    void Promote(int32 order);

    [[nodiscard]] status_t Archive(BMessage* into) const;
    // Changes nothing unless all is there.
    [[nodiscard]] status_t Regenerate(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);

private:
    using Positions = SplitVectors<kPositionParts>;
    using Velocities = SplitVectors<kVelocityParts>;

    void AdvanceOrder4(const StepPowers& powers, ForceEvaluator* bodies);
    void AdvanceCarrying(int32 order, const StepPowers& powers, ForceEvaluator* bodies);
    template <bool kHasJerk>
    void AdvanceCarrying(const StepPowers& powers, ForceEvaluator* bodies);

    std::vector<int64> ids_;  // of the bodies that the parts belong to
    Positions r_;
    Velocities v_;
};
