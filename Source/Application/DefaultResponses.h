// The standing answers to the program's questions: for the number of a question the command that
// answers it once and for all. Owned by the application; any thread may call.
#pragma once

#include <map>
#include <mutex>

#include "Platform/Support/SupportDefs.h"

class BMessage;
struct PreferenceSet;

class DefaultResponses {
public:
    // The key in the preference set; its data is a flattened record of the pairs.
    static constexpr const char* kKey = "Default responses";

    // StandingAnswers; later ones replace earlier ones.
    void Merge(const BMessage& pairs);
    // Writes the record of all pairs into the set, or removes it when there are none.
    void AddTo(PreferenceSet* set) const;
    // 0 for none.
    [[nodiscard]] uint32 Command(int32 windowID) const;
    void Clear();

private:
    mutable std::mutex mutex_;
    std::map<int32, uint32> commands_;
};
