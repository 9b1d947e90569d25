// Learns which bodies touch: the target of the calculator's collision messages. Owned and called by
// the thread that owns the run.
#pragma once

#include "BMessage.h"

class BLooper;

class CollisionWatch {
public:
    CollisionWatch();
    ~CollisionWatch();
    CollisionWatch(const CollisionWatch&) = delete;
    CollisionWatch& operator=(const CollisionWatch&) = delete;

    [[nodiscard]] BLooper* Target() const;
    // The pairs posted until now, as the calculator mails them, and forgets them; empty for none.
    // The calculator must be parked.
    [[nodiscard]] BMessage Take();

private:
    class CollisionLooper;
    CollisionLooper* const looper_;
};
