// The menu of a display's frame of reference: what stands still in it, and whether it turns. Rules
// as for BMenu.
#pragma once

#include "Displays/Projection/ViewFrame.h"
#include "Platform/Interface/Handles/BMenu.h"

class BMenuItem;
class Display;
class InterfaceTexts;
struct BodyLabels;

class FrameMenu : public BMenu {
public:
    // To the display. Neither is owned.
    static constexpr uint32 kFixed = FourCC("frfx");
    static constexpr uint32 kBarycenter = FourCC("frbc");
    static constexpr uint32 kFollowedBody = FourCC("frfo");
    static constexpr uint32 kTurn = FourCC("frtu");  // with int64 "System"
    static constexpr const char* kSystem = "System";

    FrameMenu(Display* display, const InterfaceTexts& texts);

    // The bodies that it can turn with.
    void ShowBodies(const BodyLabels& labels, const TurningPair& pair);
    // Which frame there is. The items stay: one may just have been chosen.
    void ShowFrame(int64 followed, const TurningPair& pair);

private:
    BMenuItem* Add(const char* label, uint32 what);

    Display* const display_;
    BMenuItem* const fixed_;
    BMenuItem* const barycenter_;
    BMenuItem* const followed_;
    BMenu* const bodies_;
};
