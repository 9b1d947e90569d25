// How far a run is to go, when it is not to go on for ever: for a time, until one, or until
// something happens. Travels as a message. A plain value.
#pragma once

#include <optional>

#include "Calculation/RunCondition.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
class Calculator;

struct RunTarget {
    enum class Kind : int32 {
        kNone = 0,
        kFor,
        kUntil,
        kMerger,
        kClosest,  // two bodies are as close as they come
        kPlaneX,   // a body goes through the plane across x that holds the other one, or the origin
        kPlaneY,
        kPlaneZ,
        kEscape,  // a body is unbound and beyond a distance
    };
    static constexpr uint32 kMessage = FourCC("rnto");

    Kind kind = Kind::kFor;
    double time = 0.0;  // s, of the first two
    int64 body = 0;     // identifiers
    int64 other = RunCondition::kOrigin;
    double distance = 0.0;  // m, of the last one

    [[nodiscard]] bool IsTime() const { return kind == Kind::kFor || kind == Kind::kUntil; }
    // What the calculator is to look for; nothing for a time or a merger.
    [[nodiscard]] std::optional<RunCondition> Condition() const;
    // The next run of the calculator, which is parked, from `now` on (s) stops there; of a merger
    // it knows nothing. False: that time is no later one, and nothing was changed.
    [[nodiscard]] bool SetOn(Calculator* calculator, double now) const;
    // Of the next run nothing is wanted.
    static void ClearOn(Calculator* calculator);

    [[nodiscard]] BMessage ToMessage() const;
    // None if the message is no such one.
    [[nodiscard]] static std::optional<RunTarget> From(const BMessage& message);
};
