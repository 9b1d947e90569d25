// The choice of the axis that a display looks along. Rules as for BView.
#pragma once

#include <array>

#include "Platform/Interface/Handles/BGroupView.h"

class BRadioButton;
class InterfaceTexts;

class AxisBox : public BGroupView {
public:
    AxisBox(const char* name, const InterfaceTexts& texts);

    // 1, 2 or 3 for X, Y and Z; 0 while none is chosen.
    [[nodiscard]] int32 Axis() const;
    // Chooses none for another number.
    void SetAxis(int32 axis);
    // The keyboard goes to the axis that is chosen.
    void MakeFocus(bool isFocus = true) override;

private:
    std::array<BRadioButton*, 3> buttons_{};
};
