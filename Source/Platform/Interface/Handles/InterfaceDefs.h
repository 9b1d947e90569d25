// Constants of the interface classes: keys, modifiers, mouse buttons, kinds of windows, message
// codes of windows. No state, any thread.
#pragma once

#include "Platform/Support/SupportDefs.h"

enum orientation { B_HORIZONTAL, B_VERTICAL };

enum window_type {
    B_TITLED_WINDOW,
    B_DOCUMENT_WINDOW,
    B_FLOATING_WINDOW,  // stays above the program's other windows
    B_MODAL_WINDOW,     // looks like a dialog; blocks no other window
};

// Flags of a window.
inline constexpr uint32 B_NOT_CLOSABLE = 0x20;
inline constexpr uint32 B_NOT_RESIZABLE = 0x02;
inline constexpr uint32 B_NOT_ZOOMABLE = 0x40;
inline constexpr uint32 B_NOT_MINIMIZABLE = 0x4000;
// Without a cancel button the Escape key does what the close box does.
inline constexpr uint32 B_CLOSE_ON_ESCAPE = 0x1000000;
// Controls act while the user holds them; they always do, the flag is accepted.
inline constexpr uint32 B_ASYNCHRONOUS_CONTROLS = 0x80000;

// Modifier keys. The command key of shortcuts is the Control key of this desktop's keyboards.
inline constexpr uint32 B_SHIFT_KEY = 0x01;
inline constexpr uint32 B_COMMAND_KEY = 0x02;
inline constexpr uint32 B_OPTION_KEY = 0x40;

// As a modifier of BWindow::AddShortcut: the key alone, without the command key. Fields and lists
// that take letters have it before the window.
inline constexpr uint32 B_NO_COMMAND_KEY = 0x8000;
// F1, which opens a program's guide: as a shortcut it stands alone, without the command key.
inline constexpr char B_HELP_KEY = 0x10;

inline constexpr uint32 B_PRIMARY_MOUSE_BUTTON = 0x01;
inline constexpr uint32 B_SECONDARY_MOUSE_BUTTON = 0x02;
inline constexpr uint32 B_TERTIARY_MOUSE_BUTTON = 0x04;

// Keys that give no character; the others are their Unicode character.
inline constexpr uint32 B_HOME = 0x01;
inline constexpr uint32 B_END = 0x04;
inline constexpr uint32 B_INSERT = 0x05;
inline constexpr uint32 B_BACKSPACE = 0x08;
inline constexpr uint32 B_TAB = 0x09;
inline constexpr uint32 B_ENTER = 0x0a;
inline constexpr uint32 B_PAGE_UP = 0x0b;
inline constexpr uint32 B_PAGE_DOWN = 0x0c;
inline constexpr uint32 B_ESCAPE = 0x1b;
inline constexpr uint32 B_LEFT_ARROW = 0x1c;
inline constexpr uint32 B_RIGHT_ARROW = 0x1d;
inline constexpr uint32 B_UP_ARROW = 0x1e;
inline constexpr uint32 B_DOWN_ARROW = 0x1f;
inline constexpr uint32 B_SPACE = 0x20;
inline constexpr uint32 B_DELETE = 0x7f;

inline constexpr int32 B_CONTROL_OFF = 0;
inline constexpr int32 B_CONTROL_ON = 1;

// Sent to a window by the window server; its DispatchMessage turns them into calls of its hooks.
inline constexpr uint32 B_WINDOW_RESIZED = FourCC("_WRS");
inline constexpr uint32 B_WINDOW_MOVED = FourCC("_WMV");
inline constexpr uint32 B_WINDOW_ACTIVATED = FourCC("_ACT");
inline constexpr uint32 B_SCREEN_CHANGED = FourCC("_SCH");
inline constexpr const char* kFrameField = "frame";  // rect: of the screen

// Fields of what controls and menu items send.
inline constexpr const char* kWhenField = "when";      // int64, microseconds
inline constexpr const char* kSourceField = "source";  // pointer: who sends it
inline constexpr const char* kValueField = "value";    // int32, of a control
inline constexpr const char* kIndexField = "index";    // int32: the item's place in its menu
