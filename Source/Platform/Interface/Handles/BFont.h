// The font that the desktop uses for controls. Any thread; asks the window server.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/SupportDefs.h"

struct font_height {
    float ascent = 0.0f;
    float descent = 0.0f;
    float leading = 0.0f;
};

// Sizes in logical pixels; 0 without a window server.
class BFont {
public:
    [[nodiscard]] float Size() const;
    [[nodiscard]] std::vector<float> StringWidths(const std::vector<std::string>& texts) const;
    [[nodiscard]] font_height Height() const;
};
