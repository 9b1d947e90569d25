#include "Calculation/CollisionMailbox.h"

#include "Platform/Application/BLooper.h"

void CollisionMailbox::Add(int64 later, int64 earlier) {
    message_.AddInt64(kLaterField, later);
    message_.AddInt64(kEarlierField, earlier);
}

bool CollisionMailbox::Post(BLooper* target) {
    if (target != nullptr && target->PostMessage(&message_, target) == B_WOULD_BLOCK) return false;
    Discard();
    return true;
}
