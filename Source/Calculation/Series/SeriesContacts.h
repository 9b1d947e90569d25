// Finds when bodies first touch within a step: the first time at which the distance of a pair, at
// least one of it massive, is the sum of its radii. However long the step and however small the
// bodies, none pass through each other unseen. Owned by a calculator and used by one thread at a
// time; allocates when more pairs than ever come near each other.
//
// Most pairs are ruled out by one comparison with how far bodies can move in the step. For the
// others the step is halved until the pair can be ruled out, or until it has come so near that the
// roots of its squared distance, a polynomial, are found without loss of digits (PairPath).
#pragma once

#include <optional>
#include <vector>

#include "Calculation/BodyArrays.h"
#include "Calculation/Series/SeriesStep.h"
#include "Calculation/Series/SeriesStore.h"
#include "Platform/Support/SupportDefs.h"

struct StopFlags;

class SeriesContacts {
public:
    void Resize(int32 bodies, int32 massive);
    // m.
    void SetRadius(int32 body, double radius) { radius_[static_cast<std::size_t>(body)] = radius; }

    // True if some pair touches within the step, or at its start; none: given up halfway.
    [[nodiscard]] std::optional<bool> Find(const SeriesStore& store, const SeriesInstance& kernels,
                                           const SeriesStep& step, const StopFlags& stop);
    // In scales: when all of Pairs() touch.
    [[nodiscard]] double Theta() const { return theta_; }
    // Those that touch first, or before the last place of that time has changed: in the order of
    // the pair walk, earlier body descending, then later body descending.
    [[nodiscard]] const std::vector<CollidingPair>& Pairs() const { return pairs_; }

    // These go on through each other: Find leaves them alone until they are apart where a step
    // begins, and go away from each other.
    void Pass(const std::vector<CollidingPair>& pairs);
    [[nodiscard]] bool IsPassed(const CollidingPair& pair) const;
    void ForgetPassed() { passed_.clear(); }
    template <typename Predicate>
    void ForgetPassedIf(Predicate predicate) {
        std::erase_if(passed_, predicate);
    }
    [[nodiscard]] const std::vector<CollidingPair>& Passed() const { return passed_; }
    // A step begins: those that are apart and leave each other count again.
    void DropApart(const SeriesStore& store, double theta);

private:
    struct Contact {
        double theta;
        CollidingPair pair;
    };
    void FindReaches(const SeriesStore& store, const SeriesInstance& kernels, double theta);
    void CheckBody(const SeriesStore& store, int32 slot, double theta);
    void TakeFirst(const SeriesStep& step);
    [[nodiscard]] double& ReachOf(int32 slot) {
        return reach_[static_cast<std::size_t>(slot / kSlots)].numbers[slot % kSlots];
    }

    std::vector<double> radius_;
    std::vector<SlotRow> reach_;  // radius and what a body may move, in slots
    std::vector<Contact> contacts_;
    std::vector<CollidingPair> pairs_;
    std::vector<CollidingPair> passed_;
    double theta_ = 0.0;
};
