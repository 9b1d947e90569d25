// Messages on their way to loopers, from any thread, none of which may wait: what a full port
// refuses stays here until there is room, in order; what is for a looper that is gone is dropped.
#pragma once

#include <deque>
#include <map>
#include <mutex>
#include <utility>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"

class Outbox {
public:
    // True if the message, or one before it, has to wait for room.
    bool Send(const BMessenger& target, const BMessage& message);
    // Tries what waits again; true if something still does.
    bool Retry();

private:
    using Waiting = std::deque<std::pair<BMessenger, BMessage>>;

    // A short one: sending with no timeout takes a port's own mutex and nothing else.
    std::mutex mutex_;
    std::map<int32, Waiting> waiting_;  // by port
};
