// What a user does to message boxes, menus and the open panel, done to the real widgets, from any
// thread. A window is named by its title.
#pragma once

#include <string>
#include <vector>

#include "GraphicsDefs.h"

namespace BoxHand {

// How many windows with this title are seen.
[[nodiscard]] int Count(const std::string& title);
void WaitFor(const std::string& title);
// Names the window among all that were ever seen; 0 for none.
[[nodiscard]] unsigned long long Number(const std::string& title);
// Does nothing in a window without such a button.
void Press(const std::string& title, const std::string& label);
void Tick(const std::string& title);
void PressEnter(const std::string& title);
void PressSpace(const std::string& title);
void PressEscape(const std::string& title);
// The labels of a submenu's items in that window, separators left out; what cannot be chosen in
// brackets.
[[nodiscard]] std::vector<std::string> Submenu(const std::string& title, const std::string& name);
void ChooseItem(const std::string& title, const std::string& submenu, const std::string& item);

// The desktop ends the session; returns when it may go on with that.
void EndSession();

[[nodiscard]] bool IsPanelSeen();
void CancelPanel();
void MovePanel(BRect frame);
[[nodiscard]] BRect PanelFrame();

}  // namespace BoxHand
