// Work for several threads at once.
#pragma once

#include <thread>
#include <vector>

// Returns when all have done it. Each is told its number, from 0.
template <typename Work>
void InThreads(int count, Work work) {
    std::vector<std::jthread> threads;
    for (int i = 0; i < count; i++)
        threads.emplace_back(work, i);
}
