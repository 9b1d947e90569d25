#include "Simulation/Document/ContactEnding.h"

#include <cmath>

#include "Calculation/CollisionMailbox.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"

std::optional<RunEnding> EndingAtContact(EpochPortal* portal, const BMessage& collisions) {
    const ReadGuard guard(portal);
    const AbEpoch& epoch = *portal->FocusEpoch();
    if (epoch.OnContact() != kContactStops) return std::nullopt;
    RunEnding ending;
    ending.reason = RunEnding::Reason::kTouched;
    ending.time = epoch.Time();
    RunEnding::Pair pair;
    if (collisions.FindInt64(CollisionMailbox::kLaterField, &pair.later) != B_OK ||
        collisions.FindInt64(CollisionMailbox::kEarlierField, &pair.earlier) != B_OK)
        return ending;
    const MassSystem* const later = epoch.SystemFromID(pair.later);
    const MassSystem* const earlier = epoch.SystemFromID(pair.earlier);
    if (later != nullptr && earlier != nullptr) {
        const ThreeVector apart = later->Position() - earlier->Position();
        pair.distance = std::hypot(apart.x, apart.y, apart.z);
    }
    ending.pair = pair;
    return ending;
}
