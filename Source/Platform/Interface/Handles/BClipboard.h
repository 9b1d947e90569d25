// The text that the desktop's clipboard holds. No state; any thread.
#pragma once

#include <string>

class BClipboard {
public:
    // Replaces what it holds.
    static void SetText(const std::string& text);
    // Empty if there is none, or no window server.
    [[nodiscard]] static std::string Text();
};
