// Watches operator new in the whole test program, for tests of code that must not allocate, or not
// as much as damaged input asks for. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>

// The calls so far.
std::int64_t CountAllocations();
// The largest allocation since the last call.
std::size_t TakeLargestAllocation();
