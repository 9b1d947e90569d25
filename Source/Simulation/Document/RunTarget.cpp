#include "Simulation/Document/RunTarget.h"

#include <limits>

#include "Calculation/Calculator.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kKindField = "kind";
constexpr const char* kTimeField = "time";
constexpr const char* kBodyField = "body";
constexpr const char* kOtherField = "other";
constexpr const char* kDistanceField = "distance";

constexpr double kForEver = std::numeric_limits<double>::infinity();

}  // namespace

std::optional<RunCondition> RunTarget::Condition() const {
    switch (kind) {
        case Kind::kClosest:
            return RunCondition::ClosestApproach(body, other);
        case Kind::kPlaneX:
            return RunCondition::Crossing(0, body, other);
        case Kind::kPlaneY:
            return RunCondition::Crossing(1, body, other);
        case Kind::kPlaneZ:
            return RunCondition::Crossing(2, body, other);
        case Kind::kEscape:
            return RunCondition::Escape(body, distance);
        default:
            return std::nullopt;
    }
}

bool RunTarget::SetOn(Calculator* calculator, double now) const {
    const double end = kind == Kind::kFor ? now + time : time;
    if (IsTime() && !(end > now && end < kForEver)) return false;
    calculator->SetRunLimit(0, IsTime() ? end : kForEver);
    calculator->SetRunCondition(Condition());
    return true;
}

void RunTarget::ClearOn(Calculator* calculator) {
    calculator->SetRunLimit(0, kForEver);
    calculator->SetRunCondition(std::nullopt);
}

BMessage RunTarget::ToMessage() const {
    BMessage message(kMessage);
    message.AddInt32(kKindField, static_cast<int32>(kind));
    message.AddDouble(kTimeField, time);
    message.AddInt64(kBodyField, body);
    message.AddInt64(kOtherField, other);
    message.AddDouble(kDistanceField, distance);
    return message;
}

std::optional<RunTarget> RunTarget::From(const BMessage& message) {
    RunTarget target;
    int32 kind = 0;
    if (message.what != kMessage || message.FindInt32(kKindField, &kind) != B_OK ||
        message.FindDouble(kTimeField, &target.time) != B_OK ||
        message.FindInt64(kBodyField, &target.body) != B_OK ||
        message.FindInt64(kOtherField, &target.other) != B_OK ||
        message.FindDouble(kDistanceField, &target.distance) != B_OK)
        return std::nullopt;
    if (kind < static_cast<int32>(Kind::kFor) || kind > static_cast<int32>(Kind::kEscape))
        return std::nullopt;
    target.kind = static_cast<Kind>(kind);
    return target;
}
