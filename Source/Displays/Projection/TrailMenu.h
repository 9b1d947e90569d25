// The menu of how long a display's trails are. Rules as for BMenu.
#pragma once

#include "Displays/Trajectories/TrailSource.h"
#include "Platform/Interface/Handles/BMenu.h"

class BMenuItem;
class BMessage;
class Display;
class InterfaceTexts;

class TrailMenu : public BMenu {
public:
    // To the display: a length with its limits, and that trails are to fade or are not.
    static constexpr uint32 kSetLength = FourCC("trln");
    static constexpr uint32 kToggleFading = FourCC("trfd");
    // And that it is to ask for another length.
    static constexpr uint32 kRequestLength = FourCC("rqtl");

    // Neither is owned.
    TrailMenu(Display* display, const InterfaceTexts& texts);

    void ShowLength(const TrailLength& length);
    [[nodiscard]] static BMessage MessageFor(const TrailLength& length);
    // What the message of an item makes of a length.
    [[nodiscard]] static TrailLength Chosen(const BMessage& message, TrailLength before);

private:
    void Add(const char* label, const TrailLength& length);

    Display* const display_;
    BMenuItem* other_ = nullptr;
    BMenuItem* fading_ = nullptr;
};
