// Walks an epoch tree in pre-order: an epoch, then its children in order, depth first. The walk
// does not stop at the end of the starting epoch's subtree but goes on to the end of the whole
// tree. A value for one thread, used under the document's read lock.
#pragma once

#include <vector>

#include "Platform/Support/SupportDefs.h"

class AbEpoch;

class EpochCursor {
public:
    explicit EpochCursor(AbEpoch* start) { SetTo(start); }

    void SetTo(AbEpoch* start);
    // Null when the walk is done.
    AbEpoch* GetEpoch() const { return done_ ? nullptr : current_; }
    void Increment();
    // To the next epoch that is not below the current one.
    void RightUp();

private:
    // The index of the current epoch in its parent.
    int32 TakePlace(AbEpoch* parent);

    AbEpoch* current_ = nullptr;
    bool done_ = false;
    // The indices on the way down to the current epoch, from the highest epoch that the walk has
    // been at; so that siblings need not be searched for it.
    std::vector<int32> places_;
};
