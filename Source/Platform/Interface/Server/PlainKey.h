// A shortcut of a window that is a key alone, without the command key: for BWindow::AddShortcut, as
// a modifier. Fields and lists that take letters have it before the window.
#pragma once

#include "Platform/Support/SupportDefs.h"

inline constexpr uint32 B_NO_COMMAND_KEY = 0x8000;
