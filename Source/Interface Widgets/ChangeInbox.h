// Where a window that observes the model gathers what has changed until it comes to show it: any
// number of changes make one message.
#pragma once

#include <atomic>

#include "Platform/Support/SupportDefs.h"

class BLooper;

class ChangeInbox {
public:
    // Not owned; gets "rdsp".
    explicit ChangeInbox(BLooper* window) : window_(window) {}

    // Any thread.
    void Put(int32 changes);
    // The window's thread, at "rdsp": all that has come since the last call.
    int32 Take() { return changes_.exchange(0); }

private:
    BLooper* const window_;
    std::atomic<int32> changes_{0};
};
