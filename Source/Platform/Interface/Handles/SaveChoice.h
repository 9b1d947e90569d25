// What a save panel answers: ref "directory" and string "name" of the file that the user wants. A
// plain value.
#pragma once

#include <optional>
#include <string>

#include "Platform/Storage/entry_ref.h"

class BMessage;

struct SaveChoice {
    entry_ref directory;
    std::string name;

    void AddTo(BMessage* message) const;
    // None if the message is no such answer.
    [[nodiscard]] static std::optional<SaveChoice> From(const BMessage& message);
};
