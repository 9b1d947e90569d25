// The pairs of bodies that are passing through each other: their contact has been reported, and is
// not reported again until they have parted. Kept by identifiers, so that they last from run to
// run. Owned by a method of integration and used on its thread.
#pragma once

#include <algorithm>
#include <vector>

#include "Calculation/BodyArrays.h"
#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
class Body;

class PassedPairs {
public:
    // A run begins with these, in mass order: pairs of others are forgotten.
    void SetBodies(const std::vector<Body*>& bodies);
    void Clear() {
        pairs_.clear();
        given_.clear();
    }

    [[nodiscard]] bool AreNone() const { return pairs_.empty(); }
    [[nodiscard]] bool Contain(const CollidingPair& pair) const {
        return std::find(pairs_.begin(), pairs_.end(), pair) != pairs_.end();
    }
    void Add(const std::vector<CollidingPair>& pairs);
    // Of those that touch: the ones that are not told yet. Others have parted.
    void KeepTouching(std::vector<CollidingPair>* touching);

    // A field only if there are any.
    [[nodiscard]] status_t Archive(BMessage* into) const;
    // They count from the next SetBodies on.
    void Regenerate(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);

private:
    std::vector<int64> ids_;  // of the bodies
    std::vector<CollidingPair> pairs_;
    std::vector<int64> given_;  // identifiers, two for each pair
};
