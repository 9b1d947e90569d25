// Where windows may lie on the screen. No state, any thread.
#pragma once

#include "Platform/Support/GraphicsDefs.h"

class BWindow;

// The frame moved and cut so that at least `width` by `height` pixels of the window lie on the
// screen, 5 pixels from its borders, with room for the title above it.
[[nodiscard]] BRect ConfinedFrame(BRect frame, BRect screen, float width, float height);
// Gives the window that place on the screen that it is on.
void confine_to_frame_and_screen(BWindow* window, BRect frame, float width, float height);
// The frame moved so that all of it lies on the screen, as far as it fits, with room for the title.
[[nodiscard]] BRect FrameOnScreen(BRect frame, BRect screen);
// How high what is in a window may be, so that all of it lies on the screen.
[[nodiscard]] float HeightOfContent(BRect screen);
// Moves the window onto the screen that it is on; before it is shown, by the size it will have.
void keep_on_screen(BWindow* window);
// The point moved into the left-top `fraction` of the frame.
[[nodiscard]] BPoint confine_point_to_frame(BPoint point, BRect frame, float fraction);
