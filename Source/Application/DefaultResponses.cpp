#include "Application/DefaultResponses.h"

#include <cstddef>
#include <vector>

#include "Application/Prefs/Preferences.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kWindowID = "Window ID";
constexpr const char* kDefault = "Default";

}  // namespace

void DefaultResponses::Merge(const BMessage& pairs) {
    const std::lock_guard lock(mutex_);
    int32 id = 0;
    int32 command = 0;
    for (int32 i = 0; pairs.FindInt32(kWindowID, i, &id) == B_OK &&
                      pairs.FindInt32(kDefault, i, &command) == B_OK;
         i++)
        commands_[id] = static_cast<uint32>(command);
}

void DefaultResponses::AddTo(PreferenceSet* set) const {
    BMessage pairs(kSetDefaultResponse);
    {
        const std::lock_guard lock(mutex_);
        for (const auto& [id, command] : commands_) {
            pairs.AddInt32(kWindowID, id);
            pairs.AddInt32(kDefault, static_cast<int32>(command));
        }
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
