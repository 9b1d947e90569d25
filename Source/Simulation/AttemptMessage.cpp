#include "AttemptMessage.h"

#include <new>

#include "BLooper.h"
#include "BMessage.h"
#include "OS.h"

namespace {

constexpr int kMaxAttempts = 100;
constexpr bigtime_t kPause = 100'000;

}  // namespace

void AttemptMessage(const BMessage& message, BLooper* target) {
    for (int retries = 0; target->PostMessage(&message) == B_WOULD_BLOCK; retries++) {
        if (retries == kMaxAttempts) throw std::bad_alloc();
        snooze(kPause);
    }
}
