// Learns which bodies touch, and why a run has ended by itself: the target of the calculator's
// messages. Owned and called by the thread that owns the run.
#pragma once

#include <optional>

#include "Calculation/RunEnding.h"
#include "Platform/Application/BMessage.h"

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
    [[nodiscard]] BMessage Take() { return Ask(kTakePairs); }
    // Likewise; none if the run has not ended by itself.
    [[nodiscard]] std::optional<RunEnding> TakeEnding() {
        return RunEnding::From(Ask(kTakeEnding));
    }

private:
    // What was posted before has been handled when they are answered.
    static constexpr uint32 kTakePairs = FourCC("tkpr");
    static constexpr uint32 kTakeEnding = FourCC("tken");

    [[nodiscard]] BMessage Ask(uint32 what) const;

    class CollisionLooper;
    CollisionLooper* const looper_;
};
