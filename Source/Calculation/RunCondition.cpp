#include "Calculation/RunCondition.h"

#include <algorithm>
#include <cmath>

#include "Calculation/Series/SeriesStep.h"
#include "Model/Systems/Body.h"

namespace {

int32 PlaceOf(int64 id, const std::vector<Body*>& bodies) {
    const auto found = std::ranges::find(bodies, id, &Body::ID);
    return found == bodies.end() ? -1 : static_cast<int32>(found - bodies.begin());
}

double Along(const ThreeVector& v, int32 axis) {
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

auto PointsAt(const SeriesStep& step, double theta) {
    return [&step, theta](int32 body) {
        const SeriesStep::BodyMotion motion = step.BodyAt(body, theta);
        return PathPoint{motion.position, motion.velocity};
    };
}

}  // namespace

RunCondition RunCondition::ClosestApproach(int64 body, int64 other) {
    return {kApproach, body, other};
}

RunCondition RunCondition::Crossing(int32 axis, int64 body, int64 other) {
    return {static_cast<Kind>(axis), body, other};
}

RunCondition RunCondition::Escape(int64 body, double distance) {
    RunCondition condition(kEscape, body, kOrigin);
    condition.escape_.SetDistance(distance);
    return condition;
}

bool RunCondition::Begin(const std::vector<Body*>& bodies, bool isBackwards) {
    way_ = isBackwards ? -1.0 : 1.0;
    bodyAt_ = PlaceOf(body_, bodies);
    otherAt_ = other_ == kOrigin ? -1 : PlaceOf(other_, bodies);
    if (bodyAt_ < 0 || (other_ != kOrigin && otherAt_ < 0)) return false;
    escape_.SetBodies(bodies);
    former_ = Value([&](int32 at) {
        const Body& body = *bodies[static_cast<std::size_t>(at)];
        return PathPoint{body.Position(), body.Velocity()};
    });
    return true;
}

template <class PointOfBody>
PathPoint RunCondition::Apart(const PointOfBody& pointOf) const {
    const PathPoint point = pointOf(bodyAt_);
    return otherAt_ < 0 ? point : point - pointOf(otherAt_);
}

// Bodies come closer while the way between them and its change are opposed.
template <class PointOfBody>
double RunCondition::Value(const PointOfBody& pointOf) const {
    if (kind_ == kEscape)
        return escape_.IsEscaped(escape_.FromOthers(bodyAt_, pointOf)) ? 1.0 : -1.0;
    const PathPoint apart = Apart(pointOf);
    if (kind_ == kApproach) return way_ * Dot(apart.position, apart.velocity);
    return Along(apart.position, kind_);
}

bool RunCondition::IsMet(double value) const {
    const bool isCrossing = kind_ <= kPlaneZ;
    return (former_ < 0.0 && value >= 0.0) || (isCrossing && former_ > 0.0 && value <= 0.0);
}

bool RunCondition::Reached(const BodyArrays& bodies) {
    const double value = Value([&](int32 body) { return PointOf(bodies, body); });
    const bool isMet = IsMet(value);
    former_ = value;
    return isMet;
}

std::optional<double> RunCondition::MomentIn(const SeriesStep& step, double from, double to) const {
    const auto isMetAt = [&](double theta) { return IsMet(Value(PointsAt(step, theta))); };
    if (!isMetAt(to)) {
        if (kind_ > kPlaneZ) return std::nullopt;
        // Through the plane and back: it would be where the body turns.
        to = Turn(step, from, to);
        if (!isMetAt(to)) return std::nullopt;
    }
    return FirstTheta(from, to, isMetAt);
}

std::optional<double> RunCondition::TimeOnStraightWay(const BodyArrays& bodies) const {
    const auto pointOf = [&](int32 body) { return PointOf(bodies, body); };
    const PathPoint apart = Apart(pointOf);
    double time = 0.0;
    if (kind_ == kEscape)
        time = TimeToEscape(escape_.FromOthers(bodyAt_, pointOf));
    else if (kind_ == kApproach)
        time = -Dot(apart.position, apart.velocity) / Dot(apart.velocity, apart.velocity);
    else
        time = -Along(apart.position, kind_) / Along(apart.velocity, kind_);
    if (!(way_ * time > 0.0)) return std::nullopt;
    return time;
}

// It leaves the sphere in which it is bound, or too near to have escaped; NaN if it is not in it.
double RunCondition::TimeToEscape(const PathPoint& fromOthers) const {
    const double square = Dot(fromOthers.velocity, fromOthers.velocity);
    const double radius = escape_.DistanceAt(square);
    const double growth = way_ * Dot(fromOthers.position, fromOthers.velocity);
    const double beyond = Dot(fromOthers.position, fromOthers.position) - radius * radius;
    return way_ * (std::sqrt(growth * growth - square * beyond) - growth) / square;
}

// Where a body that comes nearer to the plane and goes away from it is nearest; else the end.
double RunCondition::Turn(const SeriesStep& step, double from, double to) const {
    const auto leaves = [&](double theta) {
        const PathPoint apart = Apart(PointsAt(step, theta));
        return way_ * former_ * Along(apart.velocity, kind_) > 0.0;
    };
    if (leaves(from) || !leaves(to)) return to;
    return FirstTheta(from, to, leaves);
}
