// The lock of the window that a view is in, for the length of a block; none for a view without a
// window. False when the window is gone: then the block must do nothing.
#pragma once

#include "Platform/Interface/Handles/BView.h"

class ViewLock {
public:
    explicit ViewLock(BView* view)
        : view_(view),
          isInWindow_(view->Looper() != nullptr),
          isHeld_(isInWindow_ && view->LockLooper()) {}
    ~ViewLock() {
        if (isHeld_) view_->UnlockLooper();
    }
    ViewLock(const ViewLock&) = delete;
    ViewLock& operator=(const ViewLock&) = delete;

    explicit operator bool() const { return isHeld_ || !isInWindow_; }

private:
    BView* const view_;
    const bool isInWindow_;
    const bool isHeld_;
};
