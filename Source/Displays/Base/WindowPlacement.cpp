#include "Displays/Base/WindowPlacement.h"

#include <algorithm>

#include "Platform/Interface/Handles/BScreen.h"
#include "Platform/Interface/Handles/BWindow.h"

namespace {

constexpr float kBorder = 5.0f;
constexpr float kTitleHeight = 24.0f;

BRect MovedBy(BRect rect, float dx, float dy) {
    return {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
}

}  // namespace

BRect ConfinedFrame(BRect frame, BRect screen, float width, float height) {
    frame = MovedBy(frame, std::min(0.0f, screen.right - width - frame.left - kBorder),
                    std::min(0.0f, screen.bottom - height - frame.top - kBorder));
    frame.right = std::min(frame.right, screen.right - kBorder);
    frame.bottom = std::min(frame.bottom, screen.bottom - kBorder);
    return MovedBy(frame, std::max(0.0f, screen.left + kBorder - frame.left),
                   std::max(0.0f, screen.top + kTitleHeight - frame.top));
}

void confine_to_frame_and_screen(BWindow* window, BRect frame, float width, float height) {
    const BScreen screen(window);
    if (screen.IsValid()) frame = ConfinedFrame(frame, screen.Frame(), width, height);
    window->MoveTo({frame.left, frame.top});
    window->ResizeTo(frame.Width(), frame.Height());
}

BRect FrameOnScreen(BRect frame, BRect screen) {
    frame = MovedBy(frame, std::min(0.0f, screen.right - kBorder - frame.right),
                    std::min(0.0f, screen.bottom - kBorder - frame.bottom));
    return MovedBy(frame, std::max(0.0f, screen.left + kBorder - frame.left),
                   std::max(0.0f, screen.top + kTitleHeight - frame.top));
}

float HeightOfContent(BRect screen) {
    return screen.Height() - kTitleHeight - kBorder;
}

void keep_on_screen(BWindow* window) {
    const BScreen screen(window);
    if (!screen.IsValid()) return;
    float width = 0.0f;
    float height = 0.0f;
    window->GetPreferredSize(&width, &height);
    const BRect frame = window->Frame();
    const BRect moved =
        FrameOnScreen({frame.left, frame.top, std::max(frame.right, frame.left + width),
                       std::max(frame.bottom, frame.top + height)},
                      screen.Frame());
    if (moved.left != frame.left || moved.top != frame.top) window->MoveTo({moved.left, moved.top});
}

BPoint confine_point_to_frame(BPoint point, BRect frame, float fraction) {
    return {std::max(frame.left, std::min(point.x, frame.left + fraction * frame.Width())),
            std::max(frame.top, std::min(point.y, frame.top + fraction * frame.Height()))};
}
