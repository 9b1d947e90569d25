// The loopers that live, found by pointer or by the number of their port; so a pointer or a
// messenger that has outlived its looper is refused and not followed. Any thread may call.
#pragma once

#include <memory>

#include "Platform/Application/MessagePort.h"
#include "Platform/Support/BLocker.h"

class BLooper;

// What other threads touch of a looper. It outlives the looper for as long as one of them needs it:
// the lock and the port are closed then.
struct LooperLink {
    LooperLink(BLooper* owner, int32 token, int32 number, const char* name, int32 capacity)
        : looper(owner), handlerToken(token), portNumber(number), lock(name), port(capacity) {}

    BLooper* const looper;     // alive while the lock is held
    const int32 handlerToken;  // the looper's own
    const int32 portNumber;
    BLocker lock;
    MessagePort port;
};

using LooperRef = std::shared_ptr<LooperLink>;

namespace LooperRegistry {

[[nodiscard]] LooperRef Add(BLooper* looper, int32 handlerToken, const char* name,
                            int32 portCapacity);
void Remove(const LooperRef& link);
// Null if there is none. Neither follows the pointer.
[[nodiscard]] LooperRef Find(const BLooper* looper);
[[nodiscard]] LooperRef Find(int32 portNumber);

}  // namespace LooperRegistry
