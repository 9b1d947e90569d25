// The menu of what a display measures between. Rules as for BMenu.
#pragma once

#include "Platform/Interface/Handles/BMenu.h"

class BodiesMenu;
class Display;
class InterfaceTexts;
struct BodyLabels;

class MeasureMenu : public BMenu {
public:
    // To the display. Neither is owned.
    static constexpr uint32 kNothing = FourCC("msno");
    static constexpr uint32 kByClick = FourCC("mscl");
    static constexpr uint32 kTo = FourCC("msto");  // with int64 BodiesMenu::kSystem

    MeasureMenu(Display* display, const InterfaceTexts& texts);

    void ShowBodies(const BodyLabels& labels);

private:
    BodiesMenu* const bodies_;
};
