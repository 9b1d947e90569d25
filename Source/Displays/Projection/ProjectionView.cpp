#include "Displays/Projection/ProjectionView.h"

#include <cmath>
#include <utility>

#include "Displays/Base/PictureKeys.h"
#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ProjectionDisplay.h"

namespace {

constexpr float kClick = 4.0f;  // pixels; a hand that moves less has clicked

}  // namespace

ProjectionView::ProjectionView(ProjectionDisplay* display)
    : TrajectoryView("sky", display), display_(display) {}

void ProjectionView::MouseDown(const MouseInput& input) {
    isClick_ = false;
    if (!isDragged_ && display_->GetHands().MouseDown(input)) return;
    isClick_ = input.clicks == 1 && (input.buttons == B_PRIMARY_MOUSE_BUTTON ||
                                     input.buttons == B_SECONDARY_MOUSE_BUTTON);
    grabbed_ = input.inView;
    if ((input.buttons & B_PRIMARY_MOUSE_BUTTON) == 0) return;
    if (input.clicks > 1) {
        if (const int32 body = FindBodyAt(Cache(), input.where); body >= 0)
            display_->FollowBody(body);
        return;
    }
    isDragged_ = true;
    SetPointer(Pointer::kClosedHand);
}

void ProjectionView::MouseUp(const MouseInput& input) {
    Hands& hands = display_->GetHands();
    if (hands.MouseUp(input)) return;
    const bool wasDragged = std::exchange(isDragged_, false);
    if (wasDragged) SetPointer(Pointer::kArrow);
    if (!std::exchange(isClick_, false)) return;
    if (wasDragged)
        hands.Click(input.where);
    else
        hands.RightClick(input.where);
}

void ProjectionView::MouseMoved(const MouseInput& input, Transit transit) {
    hasPointer_ = transit != Transit::kExited;
    pointer_ = input.where;
    if (display_->GetHands().MouseMoved(input, transit)) return;
    const float way = std::abs(input.inView.x - grabbed_.x) + std::abs(input.inView.y - grabbed_.y);
    if (isClick_ && way < kClick) return;
    isClick_ = false;
    if (isDragged_ && hasPointer_)
        PanFrom(input.inView);
    else
        ShowTexts();
}

void ProjectionView::PanFrom(BPoint place) {
    const float right = grabbed_.x - place.x;
    const float down = grabbed_.y - place.y;
    grabbed_ = place;
    display_->PanBy(right, down);
}

// A hand that holds something goes by the view that it began in.
void ProjectionView::WheelTurned(const WheelInput& input) {
    if (display_->GetHands().IsHolding()) return;
    if (input.stepsY != 0.0f) display_->ZoomAbout(input.where, PictureKeys::ZoomOf(input));
}

void ProjectionView::Pinched(const PinchInput& input) {
    if (display_->GetHands().IsHolding()) return;
    display_->ZoomAbout(input.where, static_cast<double>(input.factor));
}

void ProjectionView::KeyUp(const KeyInput& input) {
    static_cast<void>(display_->GetHands().KeyUp(input));
}

void ProjectionView::KeyDown(const KeyInput& input) {
    if (display_->GetHands().KeyDown(input) || display_->GetHands().IsHolding()) return;
    if (const auto zoom = PictureKeys::ZoomOf(input))
        return display_->ZoomAbout(AnchorPoint(), *zoom);
    if (const auto arrow = PictureKeys::ArrowOf(input))
        return display_->PanBy(PictureKeys::kPanStep * arrow->x, PictureKeys::kPanStep * arrow->y);
    if (const int32 axis = PictureKeys::AxisOf(input); axis != 0) return display_->LookAlong(axis);
    if (PictureKeys::IsOrbit(input)) return display_->LookOnto(display_->GetHands().SelectedID());
    display_->TakeTimeKey(input);
}

std::vector<OverlayItem> ProjectionView::MakeOverlay() {
    std::vector<OverlayItem> items =
        display_->MakeTexts(hasPointer_ && !isDragged_ ? FindBodyAt(Cache(), pointer_) : -1);
    display_->GetHands().AddOverlay(&items);
    return items;
}
