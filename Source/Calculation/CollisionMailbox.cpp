#include "Calculation/CollisionMailbox.h"

#include "Platform/Application/BLooper.h"

std::vector<CollisionMailbox::Pair> CollisionMailbox::PairsOf(const BMessage& message) {
    std::vector<Pair> pairs;
    Pair pair;
    for (int32 i = 0; message.FindInt64(kLaterField, i, &pair.later) == B_OK &&
                      message.FindInt64(kEarlierField, i, &pair.earlier) == B_OK;
         i++)
        pairs.push_back(pair);
    return pairs;
}

void CollisionMailbox::Add(int64 later, int64 earlier) {
    message_.AddInt64(kLaterField, later);
    message_.AddInt64(kEarlierField, earlier);
}

bool CollisionMailbox::Post(BLooper* target) {
    if (target != nullptr && target->PostMessage(&message_, target) == B_WOULD_BLOCK) return false;
    Discard();
    return true;
}
