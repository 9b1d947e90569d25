// A menu of the bodies of a display, each of which sends the display one message. Rules as for
// BMenu.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"

class Display;
struct BodyLabels;

class BodiesMenu : public BMenu {
public:
    static constexpr const char* kSystem = "System";  // int64

    // The display is not owned.
    BodiesMenu(const char* label, uint32 what, Display* display)
        : BMenu(label), what_(what), display_(display) {}

    // Of many bodies only the heaviest are offered.
    void ShowBodies(const BodyLabels& labels);

private:
    const uint32 what_;
    Display* const display_;
};
