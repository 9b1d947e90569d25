#include "Calculation/EscapeRule.h"

#include "Model/Systems/Body.h"

PathPoint PointOf(const BodyArrays& bodies, int32 body) {
    const auto& r = bodies.position;
    const auto& v = bodies.velocity;
    return {{r[0][body], r[1][body], r[2][body]}, {v[0][body], v[1][body], v[2][body]}};
}

void EscapeRule::SetBodies(const std::vector<Body*>& bodies) {
    pull_ = 0.0;
    gm_.clear();
    for (const Body* const body : bodies) {
        if (!(body->M() > 0.0)) continue;
        gm_.push_back(body->M());
        pull_ += body->M();
    }
}

bool EscapeRule::IsEscaped(const PathPoint& fromOthers) const {
    const double distance = Length(fromOthers.position);
    return distance > distance_ &&
           Dot(fromOthers.velocity, fromOthers.velocity) / 2 > pull_ / distance;
}
