// Watches operator new in the whole test program, for tests of code that must not allocate, or not
// as much as damaged input asks for, or that must survive when there is no memory. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>

// The calls so far.
std::int64_t CountAllocations();
// The largest allocation since the last call.
std::size_t TakeLargestAllocation();
// From now on there is no memory for so many bytes at once, or more.
void RefuseAllocationsFrom(std::size_t size);
// The same for the calling thread, while others go on.
void RefuseAllocationsHereFrom(std::size_t size);
