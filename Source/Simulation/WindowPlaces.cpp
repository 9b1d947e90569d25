#include "Simulation/WindowPlaces.h"

#include "Displays/Base/WindowPlacement.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Platform/Interface/Handles/BScreen.h"
#include "Platform/Interface/Handles/BWindow.h"

namespace {

// The part of the screen in which the corner of a window may lie.
constexpr float kScreenFraction = 0.9f;

}  // namespace

void FindWindowInfo(const BMessage& archive, BWindow* window, const char* at, const char* shown) {
    BPoint place;
    if (archive.FindPoint(at, &place) == B_OK) {
        const BScreen screen(window);
        if (screen.IsValid())
            place = confine_point_to_frame(place, screen.Frame(), kScreenFraction);
        window->MoveTo(place);
    }
    bool isShown = false;
    if (archive.FindBool(shown, &isShown) != B_OK || isShown != window->IsHidden()) return;
    if (isShown)
        window->Show();
    else
        window->Hide();
}

void SetWindowInfo(BMessage* archive, const BWindow& window, const char* at, const char* shown) {
    const BRect frame = window.Frame();
    if (at != nullptr) archive->AddPoint(at, {frame.left, frame.top});
    if (shown != nullptr) archive->AddBool(shown, !window.IsHidden());
}

void FindWindowSize(const BMessage& archive, BWindow* window, const char* width,
                    const char* height) {
    float w = 0.0f;
    float h = 0.0f;
    if (archive.FindFloat(width, &w) != B_OK || archive.FindFloat(height, &h) != B_OK) return;
    const float unit = BFont().Size();
    window->ResizeTo(w * unit, h * unit);
}

void SetWindowSize(BMessage* archive, const BWindow& window, const char* width,
                   const char* height) {
    const BRect frame = window.Frame();
    const float unit = BFont().Size();
    if (!(unit > 0.0f)) return;
    archive->AddFloat(width, frame.Width() / unit);
    archive->AddFloat(height, frame.Height() / unit);
}
