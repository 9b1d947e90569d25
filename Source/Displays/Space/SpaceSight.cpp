#include "Displays/Space/SpaceSight.h"

#include <cmath>

#include "Displays/Projection/ShownModel.h"
#include "Displays/Space/SpaceDisplay.h"
#include "Displays/Space/SpaceView.h"

std::optional<BPoint> SpaceSight::PointOf(const ThreeVector& place) const {
    const SpaceView& view = *display_->View();
    const SpaceMap map = view.MapOf(display_->Fields().camera);
    const ThreeVector seen = map.See(place);
    if (!IsFinite(seen) || !map.IsBeforeEye(seen)) return std::nullopt;
    const SpaceMap::Point point = map.Project(seen);
    if (!std::isfinite(point.x + point.y)) return std::nullopt;
    return view.PointOf(point);
}

HandPlane SpaceSight::PlaneThrough(const ThreeVector& place) const {
    const SpaceView& view = *display_->View();
    const Camera& camera = display_->Fields().camera;
    const SpaceMap map = view.MapOf(camera);
    return {camera.right, camera.up, map.ScaleAt(map.See(place)) / view.UpperLayer().Scale()};
}

ThreeVector SpaceSight::PlaceAt(BPoint point) const {
    const Camera& camera = display_->Fields().camera;
    const ThreeVector through = Followed() == kNoSystemID ? camera.target : ThreeVector{};
    const auto at = PointOf(through);
    if (!at) return camera.target;
    const HandPlane plane = PlaneThrough(through);
    return through + plane.WayOf({point.x - at->x, point.y - at->y}, plane.scale);
}

int32 SpaceSight::BodyAt(BPoint point) const {
    return display_->View()->BodyAt(point);
}

std::optional<HandSight::Disc> SpaceSight::DiscOf(int32 body) const {
    const std::vector<SpaceBody>& bodies = display_->Scene().bodies;
    if (body < 0 || body >= static_cast<int32>(bodies.size())) return std::nullopt;
    const SpaceBody& it = bodies[static_cast<std::size_t>(body)];
    const auto center = PointOf(it.position);
    if (!center || !it.isShown) return std::nullopt;
    return Disc{*center, static_cast<float>(PlaneThrough(it.position).scale * it.radius)};
}

std::optional<BodyMotion> SpaceSight::MotionOf(int32 body) const {
    const std::vector<SpaceBody>& bodies = display_->Scene().bodies;
    if (body < 0 || body >= static_cast<int32>(bodies.size())) return std::nullopt;
    const SpaceBody& it = bodies[static_cast<std::size_t>(body)];
    return BodyMotion{it.position, it.velocity};
}

MeasuredPair& SpaceSight::Measured() {
    return display_->Measured();
}

int64 SpaceSight::Followed() const {
    return display_->Fields().followed;
}

bool SpaceSight::IsRunning() const {
    return shown_->IsRunning();
}

rgb_color SpaceSight::TextColor() const {
    return display_->Fields().options.Text();
}

void SpaceSight::ShowTexts() {
    display_->ShowTexts();
}
