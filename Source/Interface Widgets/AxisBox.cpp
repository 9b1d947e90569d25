#include "Interface Widgets/AxisBox.h"

#include <algorithm>

#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Interface/Handles/BRadioButton.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Resources/DisplayWindows.h"

AxisBox::AxisBox(const char* name, const InterfaceTexts& texts) : BGroupView(name, B_VERTICAL) {
    AddChild(new BStringView("sight", texts.Text(kLabelSightAlong)));
    auto* const row = new BGroupView("axes", B_HORIZONTAL);
    AddChild(row);
    int32 label = kLabelFirstAxis;
    for (BRadioButton*& button : buttons_) {
        const char* const text = texts.Text(label++);
        button = new BRadioButton(text, text, nullptr);
        row->AddChild(button);
    }
    row->AddStretch();
}

int32 AxisBox::Axis() const {
    int32 axis = 1;
    for (const BRadioButton* button : buttons_) {
        if (button->Value() == B_CONTROL_ON) return axis;
        axis++;
    }
    return 0;
}

void AxisBox::SetAxis(int32 axis) {
    for (BRadioButton* button : buttons_)
        button->SetValue(--axis == 0 ? B_CONTROL_ON : B_CONTROL_OFF);
}

void AxisBox::MakeFocus(bool isFocus) {
    const auto chosen = static_cast<std::size_t>(std::max(Axis(), 1)) - 1;
    buttons_[chosen]->MakeFocus(isFocus);
}
