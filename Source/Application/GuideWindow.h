// The window of the guide. Made and ended by the application; closing it only hides it, so that it
// opens again at the same page and place.
#pragma once

#include "Platform/Interface/Handles/BWindow.h"

class InterfaceTexts;

class GuideWindow : public BWindow {
public:
    // `path`: of the page.
    GuideWindow(const std::string& path, const InterfaceTexts& texts);

    bool QuitRequested() override;
};
