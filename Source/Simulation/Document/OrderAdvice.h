// Whether another order would suit an epoch better. No state.
#pragma once

#include <optional>

#include "Platform/Support/SupportDefs.h"

class EpochPortal;

// Steps for an orbit of the fastest pair, where they are so many that a higher order would suit the
// focus epoch better. Takes the portal's read lock.
[[nodiscard]] std::optional<int64> TooManySteps(EpochPortal* portal);
