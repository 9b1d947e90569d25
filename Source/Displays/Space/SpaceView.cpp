#include "Displays/Space/SpaceView.h"

#include <cmath>

#include "Displays/Base/PictureKeys.h"
#include "Displays/Space/SpaceDisplay.h"

namespace {

constexpr float kTurnStep = 24.0f;  // pixels, for one press of an arrow key
// A hand that moves less has clicked.
constexpr float kClick = 4.0f;       // pixels
constexpr float kWheelStep = 60.0f;  // pixels, for one notch of the wheel

}  // namespace

SpaceView::SpaceView(SpaceDisplay* display) : SpaceCanvas("space"), display_(display) {}

void SpaceView::MouseDown(const MouseInput& input) {
    const bool isSecond = (input.buttons & B_SECONDARY_MOUSE_BUTTON) != 0;
    const bool isPrimary = (input.buttons & B_PRIMARY_MOUSE_BUTTON) != 0;
    if (drag_ == Drag::kNone && display_->GetHands().MouseDown(input)) return;
    if (isPrimary && input.clicks > 1) {
        EndDrag();
        return display_->FollowBody(BodyAt(input.where));
    }
    if (!isPrimary && !isSecond) return;
    drag_ = isSecond ? Drag::kPan : Drag::kTurn;
    grabbed_ = input.inView;
    isClick_ = isPrimary != isSecond;
    SetPointer(Pointer::kClosedHand);
}

void SpaceView::MouseUp(const MouseInput& input) {
    if (display_->GetHands().MouseUp(input)) return;
    constexpr uint32 kBoth = B_PRIMARY_MOUSE_BUTTON | B_SECONDARY_MOUSE_BUTTON;
    if ((input.buttons & kBoth) != 0) return;
    const Drag drag = isClick_ ? drag_ : Drag::kNone;
    EndDrag();
    if (drag == Drag::kTurn) display_->GetHands().Click(input.where);
    if (drag == Drag::kPan) display_->GetHands().RightClick(input.where);
}

void SpaceView::EndDrag() {
    if (drag_ == Drag::kNone) return;
    drag_ = Drag::kNone;
    SetPointer(Pointer::kArrow);
    display_->Repaint();  // as fine as it can be
}

void SpaceView::MouseMoved(const MouseInput& input, Transit transit) {
    if (display_->GetHands().MouseMoved(input, transit)) return;
    if (drag_ == Drag::kNone) return;
    const BPoint way{input.inView.x - grabbed_.x, input.inView.y - grabbed_.y};
    if (isClick_ && std::abs(way.x) + std::abs(way.y) < kClick) return;
    isClick_ = false;
    grabbed_ = input.inView;
    if (drag_ == Drag::kPan)
        display_->PanBy(-way.x, -way.y);
    else
        display_->Turn(way, (input.modifiers & B_SHIFT_KEY) != 0);
}

// A hand that holds something goes by the view that it began in.
void SpaceView::WheelTurned(const WheelInput& input) {
    if (display_->GetHands().IsHolding()) return;
    // Some systems turn the wheel sideways with the Shift key.
    if ((input.modifiers & B_SHIFT_KEY) != 0)
        return display_->PanBy(-kWheelStep * input.stepsX, -kWheelStep * input.stepsY);
    if (input.stepsY != 0.0f) display_->ZoomAbout(input.where, PictureKeys::ZoomOf(input));
}

void SpaceView::Pinched(const PinchInput& input) {
    if (display_->GetHands().IsHolding()) return;
    display_->ZoomAbout(input.where, static_cast<double>(input.factor));
}

void SpaceView::FrameResized(BRect /*bounds*/) {
    display_->Repaint();
}

void SpaceView::AddOverlay(std::vector<OverlayItem>* items) const {
    display_->GetHands().AddOverlay(items);
}

void SpaceView::KeyUp(const KeyInput& input) {
    static_cast<void>(display_->GetHands().KeyUp(input));
}

void SpaceView::KeyDown(const KeyInput& input) {
    if (display_->GetHands().KeyDown(input) || display_->GetHands().IsHolding()) return;
    if (const auto zoom = PictureKeys::ZoomOf(input)) return display_->ZoomAbout(Middle(), *zoom);
    if (const auto arrow = PictureKeys::ArrowOf(input)) {
        if ((input.modifiers & B_SHIFT_KEY) == 0)
            return display_->Turn({kTurnStep * arrow->x, kTurnStep * arrow->y}, true);
        constexpr float kStep = PictureKeys::kPanStep;
        return display_->PanBy(kStep * arrow->x, kStep * arrow->y);
    }
    if (const int32 axis = PictureKeys::AxisOf(input); axis != 0) return display_->LookAlong(axis);
    if (PictureKeys::IsOrbit(input)) return display_->LookOnto(display_->GetHands().SelectedID());
    if (input.key == 'p' || input.key == 'P') return display_->TogglePerspective();
    display_->TakeTimeKey(input);
}
