// The screen that a window is on, as it was when the object was made. A plain value; any thread,
// with or without the window's lock.
#pragma once

#include "Platform/Support/GraphicsDefs.h"

class BWindow;

class BScreen {
public:
    // Null: the main screen.
    explicit BScreen(const BWindow* window = nullptr);

    // False without a window server.
    [[nodiscard]] bool IsValid() const { return frame_.right >= frame_.left; }
    // Logical pixels; right and bottom are the last ones, as in every frame.
    [[nodiscard]] BRect Frame() const { return frame_; }
    // Without what the desktop keeps for its own bars.
    [[nodiscard]] BRect FreeFrame() const { return free_; }

private:
    BRect frame_;
    BRect free_;
};
