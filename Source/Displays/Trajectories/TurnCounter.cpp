#include "Displays/Trajectories/TurnCounter.h"

#include <cmath>
#include <cstddef>
#include <numbers>

#include "Simulation/History/TurningAxes.h"

namespace {

// By how much one direction is turned from another, as an axis of that length.
ThreeVector TurnBetween(const ThreeVector& from, const ThreeVector& to) {
    const ThreeVector normal = Cross(from, to);
    const double sine = Length(normal);
    if (!(sine > 0.0)) return {};
    return std::atan2(sine, Dot(from, to)) / sine * normal;
}

}  // namespace

void TurnCounter::Cut(std::vector<Sample>* samples) {
    if (isDone_) return samples->clear();
    const double most = most_ * 2.0 * std::numbers::pi;
    for (std::size_t i = samples->size(); i-- > 0;) {
        const Sample& sample = (*samples)[i];
        const double before = Length(turned_);
        const double speed = Length(sample.velocity);
        if (!(speed > 0.0)) continue;
        const ThreeVector direction = (1.0 / speed) * sample.velocity;
        turned_ += TurnBetween(direction_, direction);
        direction_ = direction;
        const double after = Length(turned_);
        if (after < most) continue;
        isDone_ = true;
        if (i + 1 < samples->size()) {
            const Sample& next = (*samples)[i + 1];
            const double part = after > before ? (most - before) / (after - before) : 1.0;
            const double time = next.time - part * (next.time - sample.time);
            if (next.isJoined) (*samples)[i] = Between(sample, next, time);
        }
        (*samples)[i].isJoined = false;
        samples->erase(samples->begin(), samples->begin() + static_cast<std::ptrdiff_t>(i));
        return;
    }
}
