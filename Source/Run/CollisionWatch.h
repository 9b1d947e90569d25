// Learns which bodies ended a run by touching: the target of the calculator's collision messages.
// Owned and called by the thread that owns the run.
#pragma once

#include <utility>
#include <vector>

#include "SupportDefs.h"

class BLooper;

class CollisionWatch {
public:
    // Identifiers: the lighter body (later in mass order), and the heavier one.
    using Pair = std::pair<int64, int64>;

    CollisionWatch();
    ~CollisionWatch();
    CollisionWatch(const CollisionWatch&) = delete;
    CollisionWatch& operator=(const CollisionWatch&) = delete;

    [[nodiscard]] BLooper* Target() const { return looper_; }
    // Ends the watch: what was posted until now has been read, what comes later is lost.
    void Finish();
    // After Finish.
    [[nodiscard]] const std::vector<Pair>& Pairs() const { return pairs_; }

private:
    std::vector<Pair> pairs_;
    BLooper* looper_;  // null when finished
};
