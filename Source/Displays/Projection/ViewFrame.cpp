#include "Displays/Projection/ViewFrame.h"

#include <algorithm>

#include "Displays/Projection/BodyLabels.h"
#include "Displays/Projection/OrbitForecast.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/TurningAxes.h"

namespace {

// -1: it is not there.
int32 IndexOf(const std::vector<Body*>& bodies, int64 id) {
    const auto found = std::ranges::find(bodies, id, [](const Body* body) { return body->ID(); });
    return found == bodies.end() ? -1 : static_cast<int32>(found - bodies.begin());
}

}  // namespace

ViewFrame ReadFrame(const AbEpoch& epoch, const std::vector<Body*>& bodies, int64 followed,
                    const TurningPair& pair) {
    ViewFrame frame{ReadMembers(epoch, bodies, followed), std::nullopt};
    const int32 first = IndexOf(bodies, pair.first);
    const int32 second = IndexOf(bodies, pair.second);
    if (!pair.IsOn() || first < 0 || second < 0) return frame;
    frame.turning = {first, second, pair.axis};
    if (!frame.reference.empty()) return frame;
    const double firstMass = bodies[static_cast<std::size_t>(first)]->M();
    const double secondMass = bodies[static_cast<std::size_t>(second)]->M();
    const bool haveMass = firstMass + secondMass > 0.0;
    frame.reference = {{first, haveMass ? firstMass : 1.0}, {second, haveMass ? secondMass : 1.0}};
    return frame;
}

TurningPair FindPair(EpochPortal* portal, int64 followed, int64 second) {
    const ReadGuard guard(portal);
    const std::vector<Body*> bodies = portal->BodiesInMassOrder();
    const int32 index = IndexOf(bodies, second);
    if (index < 0 || bodies.size() < 2) return {};
    int32 about = second == followed ? -1 : IndexOf(bodies, followed);
    if (about < 0) about = OrbitForecast(bodies).PrimaryOf(index);
    if (about < 0) about = index == 0 ? 1 : 0;
    const Body& first = *bodies[static_cast<std::size_t>(about)];
    const Body& other = *bodies[static_cast<std::size_t>(index)];
    ThreeVector axis =
        Cross(other.Position() - first.Position(), other.Velocity() - first.Velocity());
    // As large as a direction is.
    const double length = std::sqrt(Dot(axis, axis));
    axis = length > 0.0 && std::isfinite(length) ? (1.0 / length) * axis : ThreeVector{0, 0, 1};
    return {first.ID(), second, axis};
}
