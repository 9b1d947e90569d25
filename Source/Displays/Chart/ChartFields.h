// What a chart shows and how, and its fields in a document. No state, any thread.
#pragma once

#include <optional>
#include <vector>

#include "Displays/Chart/ChartAxis.h"
#include "Displays/Chart/ChartReader.h"
#include "Model/Systems/MassSystem.h"
#include "Platform/Application/FieldDescription.h"

class BMessage;

struct ChartFields {
    static constexpr int32 kTime = -1;

    // Bits, by quantity; all of one dimension. Which bodies, relative to which; none: one that is
    // chosen by itself.
    int64 shown = 1;
    std::vector<int64> bodies;
    int64 about = kNoSystemID;
    int32 against = kTime;  // or a quantity of a body
    int32 crossing = 0;     // Crossing
    bool isLogAcross = false;
    bool isLogUp = false;
    bool isLight = false;
    // Else all that there is is seen.
    bool isChosenView = false;
    ChartRange across;  // SI
    ChartRange up;

    [[nodiscard]] bool Shows(Quantity quantity) const {
        return ((shown >> static_cast<int32>(quantity)) & 1) != 0;
    }
    [[nodiscard]] std::vector<Quantity> Quantities() const;
    // Shows one more, or no longer, but never nothing. Quantities of another dimension go.
    void Toggle(Quantity quantity);
    void ToggleBody(int64 body);
    [[nodiscard]] Dimension Up() const { return DimensionOf(Quantities().front()); }
    // None: time, which the quantities of a whole simulation are always shown over.
    [[nodiscard]] std::optional<Quantity> Against() const;
    [[nodiscard]] Crossing Points() const;
    [[nodiscard]] bool IsAcrossLog() const { return isLogAcross && Against(); }

    [[nodiscard]] status_t Write(BMessage* archive) const;
    // What is not there, or makes no sense, is as usual.
    void Read(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);
};
