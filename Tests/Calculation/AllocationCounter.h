// Counts the calls of operator new in the whole test program, for tests of code that must not
// allocate. Any thread.
#pragma once

#include "SupportDefs.h"

int64 CountAllocations();
