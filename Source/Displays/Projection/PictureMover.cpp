#include "Displays/Projection/PictureMover.h"

#include <cmath>
#include <optional>
#include <utility>

#include "Displays/Projection/BodiesMenu.h"
#include "Displays/Projection/KeptTrailsPainter.h"
#include "Displays/Projection/LookMenu.h"
#include "Displays/Projection/OrbitPlaces.h"
#include "Displays/Projection/ProjectionDialogs.h"
#include "Displays/Projection/ShownModel.h"
#include "Displays/Trajectories/TrajectoryDisplay.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Canvas/LineClip.h"

namespace {

// The picture keeps its coordinates while it is scrolled; beyond this they begin anew.
constexpr float kMaxPan = 16384.0f;

}  // namespace

void PictureMover::Center() {
    const BPoint anchor = display_->View()->AnchorPoint();
    fields_->projection.Shift(anchor.x, anchor.y);
    display_->View()->ScrollTo(display_->DisplayCenter());
}

void PictureMover::Redraw(bool isScaleChanged) {
    display_->ClearLow();
    if (isScaleChanged) {
        display_->MakeDiscDomains();
        dialogs_->TellScale();
    }
    display_->SetLastDisp();
    trails_->ModelChanged();
    trails_->PaintAll(shown_->Time(), shown_->Labels());
    display_->DrawDiscs();
    display_->ShowBars(trails_->TrailExtent());
}

void PictureMover::SetScale(double scale) {
    Center();
    fields_->projection.scale = scale;
    Redraw(true);
}

void PictureMover::LookAlong(int32 axis) {
    if (axis == fields_->projection.axis && !fields_->projection.plane.IsOn()) return;
    Center();
    fields_->projection.axis = axis;
    fields_->projection.plane = {};
    Redraw(false);
}

void PictureMover::LookOnto(int64 body) {
    const TurningPair pair = FindPair(display_->Epoch(), kNoSystemID, body);
    if (!pair.IsOn()) return;
    Center();
    fields_->projection.plane = PlaneAcross(pair.axis);
    Redraw(false);
}

bool PictureMover::Handle(const BMessage& message) {
    int32 axis = 0;
    int64 body = kNoSystemID;
    if (message.what == LookMenu::kLook) {
        if (message.FindInt32(LookMenu::kAxis, &axis) == B_OK) LookAlong(axis);
        return true;
    }
    if (message.what != LookMenu::kLookOnto) return false;
    if (message.FindInt64(BodiesMenu::kSystem, &body) == B_OK) LookOnto(body);
    return true;
}

void PictureMover::ZoomAbout(BPoint point, double factor) {
    const BPoint middle = display_->View()->AnchorPoint();
    // What is followed stands still, wherever the pointer is; where it is not seen, nothing is
    // lost.
    if (fields_->followed != kNoSystemID)
        if (const BPoint place = display_->Map(0.0, 0.0, 0.0);
            IsInside(place, display_->View()->Bounds()))
            point = place;
    Center();
    fields_->projection.ZoomAbout({point.x - middle.x, point.y - middle.y}, factor);
    Redraw(true);
}

void PictureMover::PanBy(float right, float down) {
    const BPoint anchor = display_->View()->AnchorPoint();
    const BPoint to{anchor.x + right, anchor.y + down};
    display_->View()->ScrollTo(to);
    if (std::abs(to.x) > kMaxPan || std::abs(to.y) > kMaxPan) {
        Center();
        return Redraw(false);
    }
    trails_->PaintUncovered(shown_->Time(), shown_->Labels());
    // What was uncovered may hold bodies.
    display_->DrawDiscs();
    display_->ShowBars(trails_->TrailExtent());
}

void PictureMover::FitAll() {
    std::optional<OrbitForecast> forecast;
    {
        const ReadGuard guard(display_->Epoch());
        forecast.emplace(shown_->Portal().BodiesInMassOrder());
    }
    trails_->ModelChanged();
    const std::vector<ThreeVector> places =
        OrbitPlaces(display_->View()->Cache(), shown_->Labels(), *forecast,
                    trails_->Take(shown_->Time(), shown_->Labels()));
    const BRect bounds = display_->View()->Bounds();
    Center();
    fields_->projection.Fit(places, bounds.Width(), bounds.Height());
    Redraw(true);
}

void PictureMover::SetFrame(int64 followed, const TurningPair& pair) {
    Center();
    // What stands still comes to the middle; where nothing does any more, the view stays where it
    // was.
    const ThreeVector before = fields_->pair.IsOn() ? ThreeVector{} : fields_->projection.center;
    const bool isFixed = followed == kNoSystemID && !pair.IsOn();
    fields_->projection.center =
        isFixed ? before + display_->View()->Cache().LastReference() : ThreeVector{};
    fields_->followed = followed;
    fields_->pair = pair;
}

bool PictureMover::TakeReference(const std::vector<Body*>& bodies) {
    TrajectoryView& view = *display_->View();
    ViewFrame frame = ReadFrame(shown_->Epoch(), bodies, fields_->followed, fields_->pair);
    const bool isPairGone = fields_->pair.IsOn() && !frame.turning;
    const bool isGone = frame.reference.empty() && fields_->followed != kNoSystemID;
    if (isPairGone || isGone) {
        // The view stays where it was, unless it turned.
        const ThreeVector origin = view.Cache().LastReference();
        if (isPairGone) fields_->projection.center = {};
        if (frame.reference.empty()) fields_->projection.center += origin;
        if (isGone) fields_->followed = kNoSystemID;
        if (isPairGone) fields_->pair = {};
    }
    if (frame.turning != view.Cache().GetTurning()) view.SetTurning(frame.turning);
    if (frame.reference != view.Cache().Reference()) view.SetReference(std::move(frame.reference));
    return isPairGone || isGone;
}
