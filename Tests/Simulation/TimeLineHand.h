// What a user does to the time line of a display, done to the real widget. On the tests' thread.
#pragma once

#include <string>

namespace TimeLineHand {

enum class Key { kHome, kEnd, kLeft, kRight, kShiftLeft, kSpace, kForward, kEscape };

// What a screen reader says of the moment that is shown: "Past: ..." or "Now: ...".
[[nodiscard]] std::string Value();
// At this part of the way from its left side to its right one.
void Click(double part);
// From one place to another and back half way, with the button held until the end.
void Drag(double from, double to);
void Press(Key key);

}  // namespace TimeLineHand
