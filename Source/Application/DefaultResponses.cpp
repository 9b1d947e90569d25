#include "Application/DefaultResponses.h"

#include <cstddef>
#include <vector>

#include "Application/MessageBoxes/StandingAnswer.h"
#include "Application/Prefs/Preferences.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BMessage.h"

void DefaultResponses::Merge(const BMessage& pairs) {
    const std::lock_guard lock(mutex_);
    for (int32 i = 0; const auto answer = StandingAnswer::From(pairs, i); i++)
        commands_[answer->windowID] = answer->command;
}

void DefaultResponses::AddTo(PreferenceSet* set) const {
    BMessage pairs(kSetDefaultResponse);
    {
        const std::lock_guard lock(mutex_);
        for (const auto& [id, command] : commands_)
            StandingAnswer{id, command}.AddTo(&pairs);
    }
    std::vector<std::byte> record;
    if (pairs.IsEmpty())
        PREFDelete(set, kKey);
    else if (pairs.Flatten(&record) == B_OK)
        PREFSetData(set, kKey, record.data(), record.size(), B_MESSAGE_TYPE);
}

uint32 DefaultResponses::Command(int32 windowID) const {
    const std::lock_guard lock(mutex_);
    const auto found = commands_.find(windowID);
    return found == commands_.end() ? 0 : found->second;
}

void DefaultResponses::Clear() {
    const std::lock_guard lock(mutex_);
    commands_.clear();
}
