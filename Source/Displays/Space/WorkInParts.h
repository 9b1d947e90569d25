// A piece of work in many parts, which the threads of a team take one after the other. No state.
#pragma once

#include <atomic>
#include <new>

#include "Calculation/WorkerTeam.h"

// Calls work(i) for each i below `count`, on any of the threads. A part for which there is no
// memory is left out.
template <typename Work>
void WorkInParts(WorkerTeam* team, int32 count, const Work& work) {
    struct Shared {
        const Work& work;
        const int32 count;
        std::atomic<int32> next{0};
    } shared{work, count};
    team->Run(
        [](void* argument) {
            auto& parts = *static_cast<Shared*>(argument);
            for (;;) {
                const int32 part = parts.next.fetch_add(1, std::memory_order_relaxed);
                if (part >= parts.count) return;
                try {
                    parts.work(part);
                } catch (const std::bad_alloc&) {
                    // The picture lacks something; the next one may have it.
                }
            }
        },
        &shared);
}
