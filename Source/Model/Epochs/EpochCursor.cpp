#include "Model/Epochs/EpochCursor.h"

#include "Model/Epochs/AbEpoch.h"

void EpochCursor::SetTo(AbEpoch* start) {
    current_ = start;
    done_ = start == nullptr;
    places_.clear();
}

void EpochCursor::Increment() {
    if (done_) return;
    if (current_->CountChildren() > 0) {
        current_ = current_->ChildAt(0);
        places_.push_back(0);
    } else {
        RightUp();
    }
}

void EpochCursor::RightUp() {
    while (!done_) {
        AbEpoch* parent = current_->Parent();
        if (!parent) {
            done_ = true;
            return;
        }
        const int32 next = TakePlace(parent) + 1;
        if (next != parent->CountChildren()) {
            current_ = parent->ChildAt(next);
            places_.push_back(next);
            return;
        }
        current_ = parent;
    }
}

int32 EpochCursor::TakePlace(AbEpoch* parent) {
    if (places_.empty()) return parent->IndexOfChild(current_);
    const int32 place = places_.back();
    places_.pop_back();
    return place;
}
