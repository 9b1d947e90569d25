#include "Model/Systems/SystemOrbits.h"

#include <cmath>

#include "Model/Systems/MassSystem.h"

namespace {

// The first of the heaviest.
const MassSystem* HeaviestBody(const MassSystem& system) {
    if (system.CountChildren() == 0) return &system;
    const MassSystem* heaviest = nullptr;
    for (int32 i = 0; i < system.CountChildren(); i++) {
        const MassSystem* const body = HeaviestBody(*system.ChildAt(i));
        if (heaviest == nullptr || body->M() > heaviest->M()) heaviest = body;
    }
    return heaviest;
}

bool Holds(const MassSystem& group, const MassSystem& system) {
    for (const MassSystem* above = &system; above != nullptr; above = above->Parent())
        if (above == &group) return true;
    return false;
}

}  // namespace

std::optional<SystemOrbit> OrbitOf(const MassSystem& system, MassSystem* root) {
    const MassSystem* about = root->SystemFromID(system.RelativeTo());
    if (about == nullptr || about == root) about = HeaviestBody(*root);
    if (Holds(system, *about)) return std::nullopt;

    RelativeState focus{about->Position(), about->Velocity()};
    double total = about->M() + system.M();
    if (Holds(*about, system)) {
        // The barycentre of the rest lies beyond that of the whole.
        total = about->M();
        const double share = system.M() / (total - system.M());
        focus.position += share * (focus.position - system.Position());
        focus.velocity += share * (focus.velocity - system.Velocity());
    }
    const OrbitalElements elements =
        ElementsOf({system.Position() - focus.position, system.Velocity() - focus.velocity}, total);
    if (!std::isfinite(elements.timeSincePeriapsis) || !std::isfinite(elements.node))
        return std::nullopt;
    return SystemOrbit{about, focus, elements};
}
