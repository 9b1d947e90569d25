// The key that opens a program's guide, F1: as a shortcut of a menu item or a window it stands
// alone, without the command key.
#pragma once

inline constexpr char B_HELP_KEY = 0x10;
