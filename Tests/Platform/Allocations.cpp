#include "Tests/Platform/Allocations.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::int64_t> gCount{0};
std::atomic<std::size_t> gLargest{0};
std::atomic<std::size_t> gRefused{SIZE_MAX};
constinit thread_local std::size_t tRefused = SIZE_MAX;

void* Allocate(std::size_t size, std::size_t alignment) {
    gCount++;
    std::size_t largest = gLargest;
    while (size > largest && !gLargest.compare_exchange_weak(largest, size)) {
    }
    if (size >= gRefused || size >= tRefused) return nullptr;
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

}  // namespace

std::int64_t CountAllocations() {
    return gCount;
}

std::size_t TakeLargestAllocation() {
    return gLargest.exchange(0);
}

void RefuseAllocationsFrom(std::size_t size) {
    gRefused = size;
}

void RefuseAllocationsHereFrom(std::size_t size) {
    tRefused = size;
}

void* operator new(std::size_t size) {
    if (void* memory = Allocate(size, alignof(std::max_align_t))) return memory;
    throw std::bad_alloc();
}

// A sanitizer's own would not come here.
void* operator new[](std::size_t size) {
    return operator new(size);
}

// As the sorts of the standard library ask for a buffer.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size, alignof(std::max_align_t));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    if (void* memory = Allocate(size, static_cast<std::size_t>(alignment))) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
