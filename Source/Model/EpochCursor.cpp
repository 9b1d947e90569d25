#include "EpochCursor.h"

#include "AbEpoch.h"

void EpochCursor::SetTo(AbEpoch* start) {
    current_ = start;
    done_ = start == nullptr;
}

void EpochCursor::Increment() {
    if (done_) return;
    if (current_->CountChildren() > 0)
        current_ = current_->ChildAt(0);
    else
        RightUp();
}

void EpochCursor::RightUp() {
    while (!done_) {
        AbEpoch* parent = current_->Parent();
        if (!parent) {
            done_ = true;
            return;
        }
        const int32 next = parent->IndexOfChild(current_) + 1;
        if (next != parent->CountChildren()) {
            current_ = parent->ChildAt(next);
            return;
        }
        current_ = parent;
    }
}
