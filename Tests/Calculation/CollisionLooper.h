// Stands for the window that a calculator posts its collisions to. Ended with Quit, like any
// looper.
#pragma once

#include <semaphore>
#include <utility>
#include <vector>

#include "BLooper.h"
#include "BMessage.h"

class CollisionLooper final : public BLooper {
public:
    // The later and the earlier body of each.
    using Pairs = std::vector<std::pair<int64, int64>>;

    void MessageReceived(BMessage* message) override {
        if (message->what != FourCC("clsn")) return BLooper::MessageReceived(message);
        pairs_.clear();
        int64 p, q;
        for (int32 i = 0; message->FindInt64("p", i, &p) == B_OK; i++)
            if (message->FindInt64("q", i, &q) == B_OK) pairs_.emplace_back(p, q);
        arrived_.release();
    }

    // From another thread: those of the next message.
    Pairs WaitForCollisions() {
        arrived_.acquire();
        Lock();
        Pairs pairs = pairs_;
        Unlock();
        return pairs;
    }

private:
    Pairs pairs_;
    std::binary_semaphore arrived_{0};
};
