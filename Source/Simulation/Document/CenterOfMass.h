// The centre of mass of an epoch's bodies, in SI units. Masses are GM (m3/s2); since only their
// ratios count, no gravitational constant is needed. The caller holds the portal's lock.
#pragma once

#include <vector>

#include "Model/Systems/ThreeVector.h"

class Body;
class EpochPortal;

struct CenterOfMass {
    ThreeVector position;  // m, sum(M r) / sum(M)
    ThreeVector velocity;  // m/s, sum(M v) / sum(M)
};

// False, and `center` untouched, when no body has mass or the result is not finite.
[[nodiscard]] bool FindCenterOfMass(const std::vector<Body*>& bodies, CenterOfMass* center);

// Shifts every body of the focus epoch so that the centre of mass stands still at the origin. Takes
// the portal's write lock. Not undoable, and no observer is told: part of starting a run.
void PutCenterOfMassAtOrigin(EpochPortal* portal);
