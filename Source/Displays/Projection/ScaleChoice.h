// What the scale dialog and its display send each other: int32 "Scale Ref" (ScaleBox::Reference),
// double "Units Pref" (of the length, if the user has chosen one) and double "Scale" (pixels per
// metre), each only if it is there. A plain value.
#pragma once

#include <optional>

#include "Platform/Support/SupportDefs.h"

class BMessage;

struct ScaleChoice {
    std::optional<int32> reference;
    std::optional<double> units;
    std::optional<double> scale;

    [[nodiscard]] BMessage ToMessage(uint32 what) const;
    [[nodiscard]] static ScaleChoice From(const BMessage& message);
};
