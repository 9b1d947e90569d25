// Threads, counting semaphores, time and the debugger stop, with the platform's names and meaning.
// All functions may be called from any thread. Identifiers are never used twice in one run of the
// program, so a stale one is refused and not mistaken for another.
#pragma once

#include <atomic>

#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

using sem_id = int32;
using thread_id = int32;
using thread_func = int32 (*)(void*);

inline constexpr int32 B_LOW_PRIORITY = 5;
inline constexpr int32 B_NORMAL_PRIORITY = 10;
inline constexpr int32 B_DISPLAY_PRIORITY = 15;

// Flags of acquire_sem_etc and release_sem_etc.
inline constexpr uint32 B_DO_NOT_RESCHEDULE = 2;  // a hint; this machine's scheduler needs none
inline constexpr uint32 B_RELATIVE_TIMEOUT = 8;
inline constexpr bigtime_t B_INFINITE_TIMEOUT = INT64_MAX;

// A counting semaphore with `count` units (not negative); its identifier, or a negative status.
[[nodiscard]] sem_id create_sem(int32 count, const char* name);
// Waiters wake with B_BAD_SEM_ID.
status_t delete_sem(sem_id sem);
status_t acquire_sem(sem_id sem);
// Takes `count` units at once. With B_RELATIVE_TIMEOUT waits at most `timeout` microseconds:
// B_TIMED_OUT, or B_WOULD_BLOCK when the timeout is 0. Without that flag the timeout is ignored.
status_t acquire_sem_etc(sem_id sem, int32 count, uint32 flags, bigtime_t timeout);
status_t release_sem(sem_id sem);
status_t release_sem_etc(sem_id sem, int32 count, uint32 flags);
// The count; negative when threads wait.
status_t get_sem_count(sem_id sem, int32* count);

// Adds and returns the former value.
inline int32 atomic_add(std::atomic<int32>* value, int32 addend) {
    return value->fetch_add(addend);
}

// A thread that waits to be resumed; its identifier, or a negative status.
[[nodiscard]] thread_id spawn_thread(thread_func function, const char* name, int32 priority,
                                     void* argument);
status_t resume_thread(thread_id thread);
// Waits for the thread's end and forgets it. A thread not yet resumed is resumed first.
status_t wait_for_thread(thread_id thread, status_t* result);
// Ends the calling thread, which must be a spawned one. Unwinds its stack.
[[noreturn]] void exit_thread(status_t result);
// The calling thread's identifier when `name` is null; otherwise any live spawned thread so named.
[[nodiscard]] thread_id find_thread(const char* name);

// Microseconds since 1970, and since some moment that never jumps.
[[nodiscard]] bigtime_t real_time_clock_usecs();
[[nodiscard]] bigtime_t system_time();
status_t snooze(bigtime_t microseconds);

// Prints the text to standard error and stops the program with a trap: a programming error was
// found.
[[noreturn]] void debugger(const char* text);
