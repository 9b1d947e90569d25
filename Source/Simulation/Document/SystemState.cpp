#include "Simulation/Document/SystemState.h"

#include <algorithm>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"

namespace {

void Append(std::vector<double>* to, const ThreeVector& v) {
    to->insert(to->end(), {v.x, v.y, v.z});
}

}  // namespace

std::size_t SystemState::CountMassive() const {
    const auto massless = std::find_if(gm.begin(), gm.end(), [](double m) { return !(m > 0.0); });
    return static_cast<std::size_t>(massless - gm.begin());
}

std::string SystemState::NameOf(int64 id) const {
    const auto found = std::find(ids.begin(), ids.end(), id);
    return found == ids.end() ? "" : names[static_cast<std::size_t>(found - ids.begin())];
}

SystemState StateOf(const EpochPortal& portal) {
    SystemState state;
    state.time = portal.FocusEpoch()->Time();
    for (const Body* body : portal.BodiesInMassOrder()) {
        state.ids.push_back(body->ID());
        state.names.push_back(body->Name());
        state.gm.push_back(body->M());
        Append(&state.positions, body->Position());
        Append(&state.velocities, body->Velocity());
    }
    return state;
}

SystemState TakeState(EpochPortal* portal) {
    const ReadGuard guard(portal);
    return StateOf(*portal);
}
