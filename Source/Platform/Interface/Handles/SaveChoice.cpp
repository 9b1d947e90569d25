#include "Platform/Interface/Handles/SaveChoice.h"

#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kDirectoryField = "directory";
constexpr const char* kNameField = "name";

}  // namespace

void SaveChoice::AddTo(BMessage* message) const {
    message->AddRef(kDirectoryField, &directory);
    message->AddString(kNameField, name);
}

std::optional<SaveChoice> SaveChoice::From(const BMessage& message) {
    SaveChoice choice;
    if (message.FindRef(kDirectoryField, &choice.directory) != B_OK ||
        message.FindString(kNameField, &choice.name) != B_OK)
        return std::nullopt;
    return choice;
}
