// A counting semaphore that avoids the kernel while nobody waits; the program's signal between
// threads. Any thread may call; the maker deletes it when nobody can use it any more.
#pragma once

#include <atomic>

#include "Platform/Kernel/OS.h"

struct Benaphore {
    std::atomic<int32> count;  // negative: the number of units waited for
    sem_id sem;
};

// Null when memory or semaphores are exhausted: callers must check. All callers pass a count of 0:
// the semaphore too starts with that many units, so others would be counted twice.
[[nodiscard]] Benaphore* create_ben(int32 count, const char* name);
// Flags and timeout as for acquire_sem_etc and release_sem_etc; so are the failing statuses.
status_t acquire_ben(Benaphore* ben);
status_t acquire_ben(Benaphore* ben, int32 n);
status_t acquire_ben(Benaphore* ben, int32 n, int32 flags, bigtime_t timeout);
status_t release_ben(Benaphore* ben);
status_t release_ben(Benaphore* ben, int32 n);
status_t release_ben(Benaphore* ben, int32 n, int32 flags);
void delete_ben(Benaphore* ben);
