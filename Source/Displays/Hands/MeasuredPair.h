// Two bodies that a display measures between. A plain value.
#pragma once

#include <optional>

#include "Model/Epochs/EpochLimits.h"
#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"

struct MeasuredPair {
    int64 from = kNoSystemID;
    int64 to = kNoSystemID;

    [[nodiscard]] bool IsOn() const { return to != kNoSystemID && from != to; }
    bool operator==(const MeasuredPair&) const = default;
};

// Of a body, in whatever frame.
struct BodyMotion {
    ThreeVector position;  // m
    ThreeVector velocity;  // m/s
};

struct MeasuredValues {
    double distance = 0.0;        // m
    double speed = 0.0;           // m/s, of one as seen from the other
    std::optional<double> angle;  // rad, between the two as seen from the third body
};

// Without a third body, or where that is at the place of one of them, there is no angle.
[[nodiscard]] MeasuredValues MeasureBetween(const BodyMotion& from, const BodyMotion& to,
                                            const std::optional<BodyMotion>& third);
