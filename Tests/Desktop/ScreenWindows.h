// Asks the display server about the windows on a screen, and drops files on them. A window that
// goes meanwhile is none. (The server's headers' macros stay away from everybody else.)
#pragma once

#include <QRect>
#include <chrono>
#include <string>
#include <vector>

namespace ScreenWindows {

// Those of the window manager's that are seen, the oldest first.
[[nodiscard]] std::vector<std::string> Seen(const std::string& display);
// Empty if there is no such window.
[[nodiscard]] std::string Title(const std::string& display, const std::string& window);
// The window's content on the screen; an invalid rectangle if there is no such window or display.
[[nodiscard]] QRect Frame(const std::string& display, const std::string& window);

// Drops a file onto the middle of a window, as file managers do. True when the window has taken it;
// each of its answers may take as long as `patience`.
[[nodiscard]] bool Drop(const std::string& display, const std::string& window,
                        const std::string& path, std::chrono::milliseconds patience);

}  // namespace ScreenWindows
