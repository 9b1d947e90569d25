// What the user did to a canvas and its view has not yet handled, in order. Filled by the window
// server, emptied by the view's looper; a looper that is late finds many moves as one, so that the
// queue stays short. Any thread.
#pragma once

#include <deque>
#include <mutex>
#include <variant>

#include "Platform/Interface/Canvas/CanvasInput.h"

struct MouseEvent {
    enum class Kind { kDown, kUp, kMoved, kEntered, kExited };
    Kind kind = Kind::kMoved;
    MouseInput input;
};

// Size, device scale or both.
struct ResizeEvent {};

using InputEvent = std::variant<MouseEvent, WheelInput, PinchInput, KeyInput, ResizeEvent>;

class InputQueue {
public:
    // True if the view does not yet know that there is something.
    bool Put(const InputEvent& event);
    // All of it; the next Put will be news again.
    [[nodiscard]] std::deque<InputEvent> TakeAll();
    // The view is another one, or heard nothing: true if there is something to tell it.
    bool ForgetTold();

private:
    std::mutex mutex_;
    std::deque<InputEvent> events_;
    bool isTold_ = false;
};
