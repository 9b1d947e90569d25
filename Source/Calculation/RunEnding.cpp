#include "Calculation/RunEnding.h"

#include <cmath>

#include "Calculation/CollisionMailbox.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kReasonField = "reason";
constexpr const char* kTimeField = "time";
constexpr const char* kLaterField = CollisionMailbox::kLaterField;
constexpr const char* kEarlierField = CollisionMailbox::kEarlierField;
constexpr const char* kDistanceField = "distance";

}  // namespace

BMessage RunEnding::ToMessage() const {
    BMessage message(kMessage);
    message.AddInt32(kReasonField, static_cast<int32>(reason));
    message.AddDouble(kTimeField, time);
    if (pair) {
        message.AddInt64(kLaterField, pair->later);
        message.AddInt64(kEarlierField, pair->earlier);
        message.AddDouble(kDistanceField, pair->distance);
    }
    return message;
}

std::optional<RunEnding> RunEnding::From(const BMessage& message) {
    RunEnding ending;
    int32 reason = 0;
    if (message.what != kMessage || message.FindInt32(kReasonField, &reason) != B_OK ||
        message.FindDouble(kTimeField, &ending.time) != B_OK)
        return std::nullopt;
    ending.reason = static_cast<Reason>(reason);
    Pair pair;
    if (message.FindInt64(kLaterField, &pair.later) == B_OK &&
        message.FindInt64(kEarlierField, &pair.earlier) == B_OK &&
        message.FindDouble(kDistanceField, &pair.distance) == B_OK)
        ending.pair = pair;
    return ending;
}

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
