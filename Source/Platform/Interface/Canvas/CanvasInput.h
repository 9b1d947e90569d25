// What the user does to a canvas. Plain values; places are canvas coordinates.
#pragma once

#include <string>

#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Support/GraphicsDefs.h"

struct MouseInput {
    BPoint where;
    uint32 buttons = 0;    // B_PRIMARY_MOUSE_BUTTON ...; of a release: those that are still down
    uint32 modifiers = 0;  // B_SHIFT_KEY ...
    int32 clicks = 1;      // 2 for the second press of a double click
    BPoint inView;         // the same place, counted from the view's left-top corner: a view that
                           // scrolls while the mouse moves needs it
};

struct WheelInput {
    BPoint where;
    float stepsX = 0.0f;  // one step is one notch of a wheel; touchpads give parts of it
    float stepsY = 0.0f;  // positive: away from the user
    uint32 modifiers = 0;
};

struct PinchInput {
    BPoint where;
    float factor = 1.0f;  // greater than 1: the fingers part
};

struct KeyInput {
    uint32 key = 0;  // the character, or B_LEFT_ARROW ... (InterfaceDefs.h)
    uint32 modifiers = 0;
    bool isReleased = false;
};
