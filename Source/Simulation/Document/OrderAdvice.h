// Whether another order would suit an epoch better. No state.
#pragma once

#include <optional>

#include "Platform/Support/SupportDefs.h"

class EpochPortal;

// Steps for an orbit of the fastest pair, where they are so many that the focus epoch had better
// have a higher order. Takes the portal's read lock.
[[nodiscard]] std::optional<int64> TooManySteps(EpochPortal* portal);
