// The colliding pairs that a calculator has found and not yet reported: a 'clsn' record with the
// bodies' identifiers in two parallel repeated int64 fields. Owned by the calculator, used on its
// thread.
#pragma once

#include <vector>

#include "Platform/Application/BMessage.h"

class BLooper;

class CollisionMailbox {
public:
    static constexpr uint32 kCollisionMessage = FourCC("clsn");
    // Fields: the later (lighter) body of each pair in mass order, and the earlier one.
    static constexpr const char* kLaterField = "p";
    static constexpr const char* kEarlierField = "q";

    struct Pair {
        int64 later = 0;
        int64 earlier = 0;
    };
    // The pairs in such a message.
    [[nodiscard]] static std::vector<Pair> PairsOf(const BMessage& message);

    void Add(int64 later, int64 earlier);
    [[nodiscard]] bool IsEmpty() const { return message_.IsEmpty(); }
    // Without waiting. False if the looper's port is full: the mail is kept and may be posted
    // again. A null or dead looper loses it.
    [[nodiscard]] bool Post(BLooper* target);
    void Discard() { message_.MakeEmpty(); }

private:
    BMessage message_{kCollisionMessage};
};
