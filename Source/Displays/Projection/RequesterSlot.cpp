#include "Displays/Projection/RequesterSlot.h"

#include "Displays/Base/WindowPlacement.h"
#include "Displays/Projection/ProjectionFields.h"
#include "Platform/Interface/Handles/BScreen.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Support/BAutolock.h"

namespace {

constexpr BPoint kFirstPlace{40.0f, 40.0f};  // from the display's left-top corner
constexpr float kScreenFraction = 0.9f;

}  // namespace

BPoint RequesterSlot::Place(BPoint place) const {
    if (requester_ == nullptr) return place;
    const BAutolock lock(requester_);
    if (!lock.IsLocked()) return place;
    const BRect frame = requester_->Frame();
    return {frame.left, frame.top};
}

void RequesterSlot::Open(const BWindow* display, BPoint place,
                         const std::function<BWindow*()>& make) {
    if (requester_ == nullptr) {
        requester_ = make();
        if (place.x == kNeverPlaced.x) {
            const BRect frame = display->Frame();
            requester_->MoveTo({frame.left + kFirstPlace.x, frame.top + kFirstPlace.y});
            keep_on_screen(requester_);
        } else {
            const BRect screen = BScreen(display).Frame();
            requester_->MoveTo(confine_point_to_frame(place, screen, kScreenFraction));
        }
        requester_->Show();
        return;
    }
    const BAutolock lock(requester_);
    if (!lock.IsLocked()) return;
    if (requester_->IsHidden()) requester_->Show();
    requester_->Activate();
}

bool RequesterSlot::Close(BPoint* place) {
    if (requester_ == nullptr) return false;
    *place = Place(*place);
    BLooper::QuitIfAlive(requester_);
    requester_ = nullptr;
    return true;
}
