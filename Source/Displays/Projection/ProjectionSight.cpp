#include "Displays/Projection/ProjectionSight.h"

#include <cmath>

#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Displays/Projection/ProjectionFields.h"
#include "Displays/Projection/ProjectionView.h"
#include "Displays/Projection/ShownModel.h"

ProjectionView* ProjectionSight::View() const {
    return static_cast<ProjectionView*>(display_->View());
}

std::optional<BPoint> ProjectionSight::PointOf(const ThreeVector& place) const {
    if (!IsFinite(place)) return std::nullopt;
    return fields_->projection.Map(View()->Center(), place.x, place.y, place.z);
}

HandPlane ProjectionSight::PlaneThrough(const ThreeVector& /*place*/) const {
    const Projection& projection = fields_->projection;
    return {projection.RightWay(), projection.UpWay(), projection.scale};
}

ThreeVector ProjectionSight::PlaceAt(BPoint point) const {
    const BPoint middle = View()->Center();
    const HandPlane plane = PlaneThrough({});
    const ThreeVector& center = fields_->projection.center;
    return Dot(center, plane.right) * plane.right + Dot(center, plane.up) * plane.up +
           plane.WayOf({point.x - middle.x, point.y - middle.y}, plane.scale);
}

int32 ProjectionSight::BodyAt(BPoint point) const {
    return FindBodyAt(View()->Cache(), point);
}

std::optional<HandSight::Disc> ProjectionSight::DiscOf(int32 body) const {
    const TrajectoryCache& cache = View()->Cache();
    if (body < 0 || body >= cache.CountBodies() || !cache.DiscAt(body).isOn) return std::nullopt;
    return Disc{cache.DiscAt(body).center, cache.DiscAt(body).radius};
}

int64 ProjectionSight::Followed() const {
    return fields_->followed;
}

std::optional<BodyMotion> ProjectionSight::MotionOf(int32 body) const {
    return display_->LastMotionOf(body);
}

MeasuredPair& ProjectionSight::Measured() {
    return fields_->measured;
}

bool ProjectionSight::IsTurning() const {
    return fields_->pair.IsOn();
}

bool ProjectionSight::IsRunning() const {
    return shown_->IsRunning();
}

void ProjectionSight::ShowTexts() {
    View()->ShowTexts();
}
