// The status value for an error number of the system. A pure function, any thread.
#pragma once

#include "Platform/Support/Errors.h"

// Never success: B_ERROR for a number without a counterpart.
[[nodiscard]] status_t ErrnoStatus(int error);
