// What contacts are where an epoch's runs end with them. No state.
#pragma once

#include <optional>

#include "Calculation/RunEnding.h"

class BMessage;
class EpochPortal;

// `collisions`: as the calculator mails them. None: in the focus epoch bodies that touch merge.
// Takes the portal's read lock.
[[nodiscard]] std::optional<RunEnding> EndingAtContact(EpochPortal* portal,
                                                       const BMessage& collisions);
