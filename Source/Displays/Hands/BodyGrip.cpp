#include "Displays/Hands/BodyGrip.h"

#include <cmath>
#include <utility>

namespace {

// Where there is nothing to go about, a new body's arrow is so fast.
constexpr double kUsualSpeed = 1000.0;  // m/s

double ThrowScale(const HandSystem& system, const HandBody& body) {
    const HandBody* const neighbour = system.NeighbourOf(body.position, body.id);
    double speed = kUsualSpeed;
    if (neighbour != nullptr)
        speed = std::sqrt((neighbour->gm + body.gm) / Length(body.position - neighbour->position));
    return speed > 0.0 && std::isfinite(speed) ? BodyGrip::kArrowLength / speed
                                               : BodyGrip::kArrowLength / kUsualSpeed;
}

}  // namespace

double ArrowScale(const HandSystem& system, const HandBody& body) {
    const double speed = Length(body.velocity - system.drift);
    return speed > 0.0 && std::isfinite(speed) ? BodyGrip::kArrowLength / speed : 0.0;
}

BodyGrip::BodyGrip(Kind kind, HandSystem system, const HandBody& body, const HandPlane& plane)
    : kind_(kind), system_(std::move(system)), start_(body), body_(body), plane_(plane) {
    speedScale_ = kind_ == Kind::kThrow ? ThrowScale(system_, body) : ArrowScale(system_, body);
}

void BodyGrip::DragBy(BPoint way, const Bounds& bounds) {
    body_ = start_;
    if (kind_ == Kind::kMove) {
        body_.position += plane_.WayOf(way, plane_.scale, bounds.axis);
        return;
    }
    body_.velocity += plane_.WayOf(way, speedScale_, bounds.axis);
    if (bounds.isCircular) body_.velocity = system_.CircularVelocity(body_);
}

BPoint BodyGrip::Arrow() const {
    return plane_.See(body_.velocity - system_.drift, speedScale_);
}
