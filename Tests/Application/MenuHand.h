// What a user does with the menu bars of windows, done to the real menus, from any thread. A window
// is named by its title, an item by its place: "File/Save", "View/Follow/Nothing". The menu of the
// application, which has an icon for a name, is "Orvek".
#pragma once

#include <string>
#include <vector>

namespace MenuHand {

// All items that lead to no further menu; none where there is no such window.
[[nodiscard]] std::vector<std::string> Items(const std::string& title);
// Those of them that can be chosen.
[[nodiscard]] bool CanChoose(const std::string& title, const std::string& item);
[[nodiscard]] bool IsMarked(const std::string& title, const std::string& item);
// Does nothing where the item cannot be chosen.
void Choose(const std::string& title, const std::string& item);

// As by the close box.
void Close(const std::string& title);
// Presses the Home key in a window whose list has the keyboard.
void SelectFirst(const std::string& title);
// A name is being typed in the window's list.
[[nodiscard]] bool IsRenaming(const std::string& title);
// All points of the window.
[[nodiscard]] std::string Picture(const std::string& title);
// How many of them have not the sky's colour.
[[nodiscard]] int CountPainted(const std::string& title);

}  // namespace MenuHand
