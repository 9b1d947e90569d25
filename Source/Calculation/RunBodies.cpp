#include "Calculation/RunBodies.h"

#include <algorithm>
#include <cmath>

#include "Calculation/StopFlags.h"
#include "Model/Systems/Body.h"

namespace {

// What is slower does not interact; nor does it for the integrators.
constexpr double kMinRate = 1e-100;  // 1/s2

ThreeVector At(const double* const (&axes)[3], std::size_t body) {
    return {axes[0][body], axes[1][body], axes[2][body]};
}

void Put(const ThreeVector& value, double* const (&axes)[3], std::size_t body) {
    axes[0][body] = value.x;
    axes[1][body] = value.y;
    axes[2][body] = value.z;
}

}  // namespace

void RunBodies::Load(const std::vector<Body*>& bodies, const BodyRows& rows) {
    rows_ = rows;
    coordinates_ = rows.Coordinates();
    ids_.clear();
    for (std::size_t i = 0; i < bodies.size(); i++) {
        Put(bodies[i]->Position(), rows.position, i);
        Put(bodies[i]->Velocity(), rows.velocity, i);
        rows.gm[i] = bodies[i]->M();
        ids_.push_back(bodies[i]->ID());
    }
    ComputeKissDist(bodies);
}

void RunBodies::ComputeKissDist(const std::vector<Body*>& bodies) {
    for (std::size_t i = 0; i < bodies.size(); i++)
        rows_.radius[i] = bodies[i]->Radius();
}

void RunBodies::IgnoreKissDist() {
    std::fill_n(rows_.radius, rows_.bodies, 0.0);
}

void RunBodies::Store(const std::vector<Body*>& bodies) const {
    for (std::size_t i = 0; i < bodies.size(); i++) {
        bodies[i]->SetPosition(At(coordinates_.position, i));
        bodies[i]->SetVelocity(At(coordinates_.velocity, i));
    }
}

bool RunBodies::AreStill(const std::vector<Body*>& bodies) const {
    if (bodies.size() != ids_.size()) return false;
    for (std::size_t i = 0; i < bodies.size(); i++) {
        const Body& body = *bodies[i];
        if (body.ID() != ids_[i] || body.M() != rows_.gm[i] ||
            body.Position() != At(coordinates_.position, i) ||
            body.Velocity() != At(coordinates_.velocity, i))
            return false;
    }
    return true;
}

bool RunBodies::AreFinite() const {
    const auto areFinite = [this](const double* numbers) {
        return std::all_of(numbers, numbers + rows_.bodies,
                           [](double number) { return std::isfinite(number); });
    };
    for (int axis = 0; axis < 3; axis++)
        if (!areFinite(rows_.position[axis]) || !areFinite(rows_.velocity[axis])) return false;
    return true;
}

std::optional<CollidingPair> RunBodies::FastestPair(const StopFlags& stop) const {
    std::optional<CollidingPair> fastest;
    double greatest = kMinRate;
    for (int32 i = rows_.massive - 1; i >= 0; i--) {
        if (stop.ShouldStop()) return std::nullopt;
        for (int32 j = rows_.bodies - 1; j > i; j--) {
            double r2 = 0.0;
            double w2 = 0.0;
            for (int axis = 0; axis < 3; axis++) {
                const double d = rows_.position[axis][i] - rows_.position[axis][j];
                const double w = rows_.velocity[axis][i] - rows_.velocity[axis][j];
                r2 += d * d;
                w2 += w * w;
            }
            const double gm = rows_.gm[i] + (j < rows_.massive ? rows_.gm[j] : 0.0);
            const double rate = std::max(gm / (r2 * std::sqrt(r2)), w2 / r2);
            if (!(rate > greatest)) continue;
            greatest = rate;
            fastest = {j, i};
        }
    }
    return fastest;
}

double RunBodies::Distance(const CollidingPair& pair) const {
    const auto apart = [&](int axis) {
        return rows_.position[axis][pair.earlier] - rows_.position[axis][pair.later];
    };
    return std::hypot(apart(0), apart(1), apart(2));
}
