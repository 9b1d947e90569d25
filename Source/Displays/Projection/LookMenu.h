// The menu of where a display looks from: along an axis, or onto the orbit of a body. Rules as for
// BMenu.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"

class BodiesMenu;
class Display;
class InterfaceTexts;
struct BodyLabels;

class LookMenu : public BMenu {
public:
    // To the display. Neither is owned.
    static constexpr uint32 kLook = FourCC("splk");      // with int32 "Axis"
    static constexpr uint32 kLookOnto = FourCC("splo");  // with int64 BodiesMenu::kSystem
    static constexpr const char* kAxis = "Axis";

    LookMenu(Display* display, const InterfaceTexts& texts);

    void ShowBodies(const BodyLabels& labels);

private:
    BodiesMenu* bodies_;
};
