// The dialog that chooses the axis a display looks along. Made, shown and quit by the display.
// However the user closes it, it tells the display and stays until the display quits it.
#pragma once

#include "Platform/Interface/Handles/BWindow.h"

class AxisBox;
class Display;

class AxisRequester : public BWindow {
public:
    static constexpr uint32 kSetAxis = FourCC("stax");
    static constexpr const char* kAxisField = "Axis";  // int32, if one is chosen
    static constexpr uint32 kCancel = FourCC("cnax");

    AxisRequester(int32 axis, Display* display);

    bool QuitRequested() override;

private:
    Display* const display_;
    AxisBox* const axes_;
};
