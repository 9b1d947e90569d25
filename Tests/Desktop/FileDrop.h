// Drops a file onto a window, as file managers do: by the display server's protocol for drag and
// drop (XDND, version 5).
#pragma once

#include <QPoint>
#include <chrono>
#include <string>

// `at`: on the screen. True when the window has taken the file; each of its answers may take as
// long as `patience`.
[[nodiscard]] bool DropFile(const std::string& display, const std::string& window, QPoint at,
                            const std::string& path, std::chrono::milliseconds patience);
