// The menu that leads to the guide; its key is the help key in every window of a simulation. Its
// item is for the application. Rules as for BMenu.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"

class InterfaceTexts;

class HelpMenu : public BMenu {
public:
    // To the application: show the guide.
    static constexpr uint32 kShowGuide = FourCC("guid");

    explicit HelpMenu(const InterfaceTexts& texts);
};
