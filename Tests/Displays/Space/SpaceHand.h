// What a user does to the picture of a space display, done to the real widget. On the tests'
// thread; a window is named by the beginning of its title.
#pragma once

#include <string>

#include "Platform/Support/GraphicsDefs.h"

namespace SpaceHand {

enum class Button { kLeft, kRight };
enum class Key { kLeft, kRight, kUp, kDown, kPlus, kMinus, kX, kY, kZ, kP, kO, kEscape };

// From the middle of the picture, in pixels.
void Drag(const std::string& title, Button button, BPoint way, bool withShift = false);
void Click(const std::string& title, BPoint fromMiddle);
void DoubleClick(const std::string& title, BPoint fromMiddle);
// Notches away from the user.
void TurnWheel(const std::string& title, BPoint fromMiddle, int notches, bool withShift = false);
void Press(const std::string& title, Key key, bool withShift = false);

// One by one, with the left button; places as above.
enum class With { kNothing, kShift, kCtrl };
void PressButton(const std::string& title, BPoint at, With with = With::kNothing);
void MoveTo(const std::string& title, BPoint at, With with = With::kNothing);
void Release(const std::string& title, BPoint at, With with = With::kNothing);
void HoldKey(const std::string& title, Key key, bool isDown);

}  // namespace SpaceHand
