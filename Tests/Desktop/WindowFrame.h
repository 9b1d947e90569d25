// Asks the display server where a window is. (Its header's macros stay away from everybody else.)
#pragma once

#include <QRect>
#include <string>

// The window's content on the screen; an invalid rectangle if there is no such window or display.
[[nodiscard]] QRect WindowFrame(const std::string& display, const std::string& window);
