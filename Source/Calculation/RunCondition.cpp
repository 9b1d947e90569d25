#include "Calculation/RunCondition.h"

#include <algorithm>

#include "Model/Systems/Body.h"

namespace {

int32 PlaceOf(int64 id, const std::vector<Body*>& bodies) {
    const auto found = std::ranges::find(bodies, id, &Body::ID);
    return found == bodies.end() ? -1 : static_cast<int32>(found - bodies.begin());
}

double Along(const ThreeVector& v, int32 axis) {
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

}  // namespace

RunCondition RunCondition::ClosestApproach(int64 body, int64 other) {
    return {kApproach, body, other};
}

RunCondition RunCondition::Crossing(int32 axis, int64 body, int64 other) {
    return {axis, body, other};
}

bool RunCondition::Begin(const std::vector<Body*>& bodies) {
    bodyAt_ = PlaceOf(body_, bodies);
    otherAt_ = other_ == kOrigin ? -1 : PlaceOf(other_, bodies);
    if (bodyAt_ < 0 || (other_ != kOrigin && otherAt_ < 0)) return false;
    const Body& body = *bodies[static_cast<std::size_t>(bodyAt_)];
    ThreeVector position = body.Position();
    ThreeVector velocity = body.Velocity();
    if (otherAt_ >= 0) {
        const Body& other = *bodies[static_cast<std::size_t>(otherAt_)];
        position -= other.Position();
        velocity -= other.Velocity();
    }
    former_ = axis_ == kApproach ? Dot(position, velocity) : Along(position, axis_);
    return true;
}

double RunCondition::Difference(const double* const axes[3], int32 axis) const {
    const double* const values = axes[axis];
    return otherAt_ < 0 ? values[bodyAt_] : values[bodyAt_] - values[otherAt_];
}

// Bodies come closer while the way between them and its change are opposed.
bool RunCondition::Reached(const BodyArrays& bodies) {
    const double former = former_;
    if (axis_ == kApproach) {
        former_ = 0.0;
        for (int32 axis = 0; axis < 3; axis++)
            former_ += Difference(bodies.position, axis) * Difference(bodies.velocity, axis);
        return former < 0.0 && former_ >= 0.0;
    }
    former_ = Difference(bodies.position, axis_);
    return (former < 0.0 && former_ >= 0.0) || (former > 0.0 && former_ <= 0.0);
}
