// When a body has escaped: it is unbound and beyond a distance, both seen from the centre of mass
// of the other massive bodies. A plain value; nothing of the bodies is kept.
#pragma once

#include <algorithm>
#include <vector>

#include "Calculation/BodyArrays.h"
#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"

class Body;

struct PathPoint {
    ThreeVector position;  // m
    ThreeVector velocity;  // m/s

    PathPoint operator-(const PathPoint& other) const {
        return {position - other.position, velocity - other.velocity};
    }
};

[[nodiscard]] PathPoint PointOf(const BodyArrays& bodies, int32 body);

class EscapeRule {
public:
    // A run begins or goes on with these, in mass order.
    void SetBodies(const std::vector<Body*>& bodies);
    // m.
    void SetDistance(double distance) { distance_ = distance; }

    // Of the body, seen from the others; `pointOf` gives that of every massive body, and its own.
    template <class PointOfBody>
    [[nodiscard]] PathPoint FromOthers(int32 body, const PointOfBody& pointOf) const {
        PathPoint sum;
        double pull = 0.0;
        for (int32 i = 0; i < static_cast<int32>(gm_.size()); i++) {
            if (i == body) continue;
            const PathPoint point = pointOf(i);
            const double gm = gm_[static_cast<std::size_t>(i)];
            sum.position += point.position * gm;
            sum.velocity += point.velocity * gm;
            pull += gm;
        }
        const PathPoint own = pointOf(body);
        if (!(pull > 0.0)) return own;
        return {own.position - sum.position * (1.0 / pull),
                own.velocity - sum.velocity * (1.0 / pull)};
    }
    [[nodiscard]] bool IsEscaped(const PathPoint& fromOthers) const;
    // Beyond this, m, a body of that squared speed has escaped.
    [[nodiscard]] double DistanceAt(double squaredSpeed) const {
        return std::max(distance_, 2.0 * pull_ / squaredSpeed);
    }

private:
    double distance_ = 0.0;
    double pull_ = 0.0;       // m3/s2, of all
    std::vector<double> gm_;  // of massive bodies
};
