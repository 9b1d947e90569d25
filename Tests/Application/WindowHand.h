// What a user does to windows, their menus, message boxes and the open panel, done to the real
// widgets, from any thread, and what is seen in them. A window is named by its title, a menu item
// by its place: "File/Save", "View/Follow/Nothing". The menu of the application, which has an icon
// for a name, is "Orvek". What is not there, or cannot be chosen, is left alone.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/GraphicsDefs.h"

namespace WindowHand {

enum class Key { kEnter, kSpace, kEscape, kHome, kTab, kHelp, kDown };

// --- Windows ---

// How many windows with this title are seen.
[[nodiscard]] int Count(const std::string& title);
void WaitFor(const std::string& title);
// Gives it the keyboard, without which it has no shortcuts.
void Activate(const std::string& title);
// The text of the page that the window shows, from the first line that is seen.
[[nodiscard]] std::string PageText(const std::string& title);
// Names the window among all that were ever seen; 0 for none.
[[nodiscard]] unsigned long long Number(const std::string& title);
// A button or a check box.
void Click(const std::string& title, const std::string& label);
// Where the keyboard is in the window.
void Press(const std::string& title, Key key);
// As by the close box.
void Close(const std::string& title);
// A name is being typed in the window's list.
[[nodiscard]] bool IsRenaming(const std::string& title);
// All points of the window.
[[nodiscard]] std::string Picture(const std::string& title);
// How many of them have not the sky's colour.
[[nodiscard]] int CountPainted(const std::string& title);

// --- Menus ---

// All items that lead to no further menu.
[[nodiscard]] std::vector<std::string> Items(const std::string& title);
[[nodiscard]] bool CanChoose(const std::string& title, const std::string& item);
[[nodiscard]] bool IsMarked(const std::string& title, const std::string& item);
// What is told of the item.
[[nodiscard]] std::string Tip(const std::string& title, const std::string& item);
void Choose(const std::string& title, const std::string& item);

// --- The desktop ---

// It ends the session; returns when it may go on with that.
void EndSession();

[[nodiscard]] bool IsPanelSeen();
void CancelPanel();
void MovePanel(BRect frame);
[[nodiscard]] BRect PanelFrame();
[[nodiscard]] std::string PanelFolder();

}  // namespace WindowHand
