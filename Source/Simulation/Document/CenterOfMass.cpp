#include "Simulation/Document/CenterOfMass.h"

#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"

// The sums run over bodies and not over systems, whose own centre is undefined when they have no
// mass.
bool FindCenterOfMass(const std::vector<Body*>& bodies, CenterOfMass* center) {
    double mass = 0.0;
    for (const Body* body : bodies)
        mass += body->M();
    if (!(mass > 0.0)) return false;
    CenterOfMass found;
    for (const Body* body : bodies) {
        const double share = body->M() / mass;
        found.position += share * body->Position();
        found.velocity += share * body->Velocity();
    }
    if (!IsFinite(found.position) || !IsFinite(found.velocity)) return false;
    *center = found;
    return true;
}

void PutCenterOfMassAtOrigin(EpochPortal* portal) {
    const WriteGuard guard(portal);
    const std::vector<Body*> bodies = portal->BodiesInMassOrder();
    CenterOfMass center;
    if (!FindCenterOfMass(bodies, &center)) return;
    for (Body* body : bodies) {
        body->SetPosition(body->Position() - center.position);
        body->SetVelocity(body->Velocity() - center.velocity);
    }
}
