#include "AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<int64> gAllocations{0};
}

int64 CountAllocations() {
    return gAllocations;
}

void* operator new(std::size_t size) {
    gAllocations++;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    gAllocations++;
    return std::malloc(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    gAllocations++;
    const auto unit = static_cast<std::size_t>(alignment);
    if (void* memory = std::aligned_alloc(unit, (size + unit - 1) / unit * unit)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
