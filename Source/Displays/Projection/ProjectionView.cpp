#include "Displays/Projection/ProjectionView.h"

#include <cmath>

#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ProjectionDisplay.h"

namespace {

// Of the scale, for one notch of the wheel or one press of a key.
constexpr double kZoomStep = 1.25;
constexpr float kPanStep = 40.0f;  // pixels, for one press of an arrow key

}  // namespace

ProjectionView::ProjectionView(ProjectionDisplay* display)
    : TrajectoryView("sky", display), display_(display) {}

void ProjectionView::MouseDown(const MouseInput& input) {
    if ((input.buttons & B_PRIMARY_MOUSE_BUTTON) == 0) return;
    if (input.clicks > 1) {
        if (const int32 body = FindBodyAt(Cache(), input.where); body >= 0)
            display_->FollowBody(body);
        return;
    }
    isDragged_ = true;
    grabbed_ = input.inView;
    SetPointer(Pointer::kClosedHand);
}

void ProjectionView::MouseUp(const MouseInput& /*input*/) {
    if (!isDragged_) return;
    isDragged_ = false;
    SetPointer(Pointer::kArrow);
}

void ProjectionView::MouseMoved(const MouseInput& input, Transit transit) {
    hasPointer_ = transit != Transit::kExited;
    pointer_ = input.where;
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

void ProjectionView::WheelTurned(const WheelInput& input) {
    if (input.stepsY != 0.0f)
        display_->ZoomAbout(input.where, std::pow(kZoomStep, static_cast<double>(input.stepsY)));
}

void ProjectionView::Pinched(const PinchInput& input) {
    display_->ZoomAbout(input.where, static_cast<double>(input.factor));
}

void ProjectionView::KeyDown(const KeyInput& input) {
    switch (input.key) {
        case '+':
        case '=':
            return display_->ZoomAbout(AnchorPoint(), kZoomStep);
        case '-':
            return display_->ZoomAbout(AnchorPoint(), 1.0 / kZoomStep);
        case B_LEFT_ARROW:
            return display_->PanBy(-kPanStep, 0.0f);
        case B_RIGHT_ARROW:
            return display_->PanBy(kPanStep, 0.0f);
        case B_UP_ARROW:
            return display_->PanBy(0.0f, -kPanStep);
        case B_DOWN_ARROW:
            return display_->PanBy(0.0f, kPanStep);
        default:
            display_->TakeTimeKey(input);
    }
}

std::vector<OverlayItem> ProjectionView::MakeOverlay() {
    return display_->MakeTexts(hasPointer_ && !isDragged_ ? FindBodyAt(Cache(), pointer_) : -1);
}
