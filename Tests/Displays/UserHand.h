// What a user does to windows, done to the real widgets. On the tests' thread; a window is named by
// the beginning of its title. (The toolkit's own headers and ours both have a `Display`: this keeps
// them apart.)
#pragma once

#include <string>

#include "Platform/Support/GraphicsDefs.h"

namespace UserHand {

enum class Key { kEnter, kEscape, kLeftArrow };

void WaitForWindow(const std::string& title, bool isThere = true);
void Press(const std::string& title, Key key);
// Into the only entry of the window, over what is there.
void Type(const std::string& title, const std::string& text);
[[nodiscard]] std::string EntryText(const std::string& title);
void MoveWindow(const std::string& title, BPoint place);
// A scroll bar over an edge of the picture, in pixels; what is shown of all, from `value` on.
struct Bar {
    bool isSeen;
    int value;
    int shown;
    int all;
};
[[nodiscard]] Bar FindBar(const std::string& title, bool isVertical);
// Holds its handle and moves it by so many pixels of what it shows.
void DragBar(const std::string& title, bool isVertical, int by);
// An item of any menu of the window.
void Choose(const std::string& title, const std::string& item);
[[nodiscard]] bool IsEnabled(const std::string& title, const std::string& item);
// The text of the menu item with this shortcut, "Ctrl+G", in any window that is seen.
[[nodiscard]] std::string ItemText(const std::string& shortcut);

}  // namespace UserHand
