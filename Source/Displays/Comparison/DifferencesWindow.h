// A text that can be read and copied: what two epochs differ by. Made by the display; closing it
// ends it. Rules as for BWindow.
#pragma once

#include <string>

#include "Platform/Interface/Handles/BWindow.h"

class InterfaceTexts;

class DifferencesWindow : public BWindow {
public:
    // The place is that of its left-top corner.
    DifferencesWindow(BPoint at, const std::string& text, const InterfaceTexts& texts);
};
