#include "AllocationPeak.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::size_t> gLargest{0};
}

std::size_t TakeLargestAllocation() {
    return gLargest.exchange(0);
}

void* operator new(std::size_t size) {
    std::size_t largest = gLargest;
    while (size > largest && !gLargest.compare_exchange_weak(largest, size)) {
    }
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
