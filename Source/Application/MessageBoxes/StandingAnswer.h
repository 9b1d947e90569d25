// The answer to a question once and for all: int32 "Window ID", the number of the question, and
// int32 "Default", the command that answers it. A plain value.
#pragma once

#include <optional>

#include "Platform/Support/SupportDefs.h"

class BMessage;

struct StandingAnswer {
    int32 windowID = 0;
    uint32 command = 0;

    // A message may hold several.
    void AddTo(BMessage* message) const;
    [[nodiscard]] static std::optional<StandingAnswer> From(const BMessage& message, int32 index);
};
