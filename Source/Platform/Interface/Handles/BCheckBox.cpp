#include "Platform/Interface/Handles/BCheckBox.h"

#include <QCheckBox>

#include "Platform/Interface/Server/ButtonPart.h"

BCheckBox::BCheckBox(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<ButtonPart<QCheckBox>>(label)) {}

void BCheckBox::SetLabel(const char* label) {
    BControl::SetLabel(label);
    ShowLabel(Part(), Label());
}

void BCheckBox::SetValue(int32 value) {
    BControl::SetValue(value != B_CONTROL_OFF ? B_CONTROL_ON : B_CONTROL_OFF);
    ChangeWidget<QCheckBox>(
        Part(), [isOn = value != B_CONTROL_OFF](QCheckBox& box) { box.setChecked(isOn); });
}
