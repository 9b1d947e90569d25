// Whom the systems of an epoch go around, and on which orbits. No state; the caller holds the lock
// of the model.
#pragma once

#include <optional>

#include "Model/Systems/OrbitalElements.h"

class MassSystem;

struct SystemOrbit {
    const MassSystem* about;
    RelativeState focus;  // of what it goes around, from the origin
    OrbitalElements elements;
};

// About the system that it is shown relative to, or about the heaviest body if that is none. Within
// a group, about the rest of the group. None: it is the heaviest itself, both are in one place, or
// neither has mass.
[[nodiscard]] std::optional<SystemOrbit> OrbitOf(const MassSystem& system, MassSystem* root);
