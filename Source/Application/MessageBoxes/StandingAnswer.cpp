#include "Application/MessageBoxes/StandingAnswer.h"

#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kWindowIDField = "Window ID";
constexpr const char* kCommandField = "Default";

}  // namespace

void StandingAnswer::AddTo(BMessage* message) const {
    message->AddInt32(kWindowIDField, windowID);
    message->AddInt32(kCommandField, static_cast<int32>(command));
}

std::optional<StandingAnswer> StandingAnswer::From(const BMessage& message, int32 index) {
    StandingAnswer answer;
    int32 command = 0;
    if (message.FindInt32(kWindowIDField, index, &answer.windowID) != B_OK ||
        message.FindInt32(kCommandField, index, &command) != B_OK)
        return std::nullopt;
    answer.command = static_cast<uint32>(command);
    return answer;
}
