#include "Calculation/RunEnding.h"

#include "Calculation/CollisionMailbox.h"
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
