// The largest piece of memory that the test program asked operator new for, for tests of code that
// must not believe the sizes it is told. Any thread.
#pragma once

#include <cstddef>

// The largest request since the last call.
std::size_t TakeLargestAllocation();
