#include "Platform/Interface/Handles/BRadioButton.h"

#include <QRadioButton>

#include "Platform/Interface/Server/ButtonPart.h"

BRadioButton::BRadioButton(const char* name, const char* label, BMessage* message)
    : BControl(name, label, message, std::make_shared<ButtonPart<QRadioButton>>(label)) {}

void BRadioButton::SetLabel(const char* label) {
    BControl::SetLabel(label);
    ShowLabel(Part(), Label());
}

void BRadioButton::SetValue(int32 value) {
    const bool isOn = value != B_CONTROL_OFF;
    BControl::SetValue(isOn ? B_CONTROL_ON : B_CONTROL_OFF);
    if (isOn) TurnOthersOff();
    ChangeWidget<QRadioButton>(Part(), [isOn](QRadioButton& button) {
        // The toolkit refuses to turn the last one off that is on.
        button.setAutoExclusive(isOn);
        button.setChecked(isOn);
        button.setAutoExclusive(true);
    });
}

void BRadioButton::Changed(const BMessage& message) {
    TurnOthersOff();
    BControl::Changed(message);
}

void BRadioButton::TurnOthersOff() {
    if (Parent() == nullptr) return;
    for (int32 i = 0; i < Parent()->CountChildren(); i++)
        if (auto* const other = dynamic_cast<BRadioButton*>(Parent()->ChildAt(i));
            other != nullptr && other != this)
            other->TakeValue(B_CONTROL_OFF);
}
