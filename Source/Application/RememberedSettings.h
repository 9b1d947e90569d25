// What the application remembers from one run to the next, beside the standing answers: the value
// that is read from the preference set at start and written into it at the end. A plain value.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/Errors.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

class DefaultResponses;

struct RememberedSettings {
    std::string openIn;  // the folder that the open panel shows first; empty: not remembered
    // The open panel's area, as MyFilePanel gives it. On saving only with `hasArea`.
    bool hasArea = false;
    BPoint openAt;
    float openWidth = 0.0f;
    float openHeight = 0.0f;
    bool galleryShown = false;                 // once, without being asked for
    int32 historyMegabytes = 0;                // that kept runs may take; 0: not remembered
    std::vector<std::string> recentDocuments;  // the latest first

    // What is missing or of another type keeps its value.
    [[nodiscard]] status_t Load(DefaultResponses* responses);
    // Other items of the set stay as they are.
    [[nodiscard]] status_t Save(const DefaultResponses& responses) const;
};
