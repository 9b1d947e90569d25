#include "Interface Widgets/SwitchControl.h"

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BCheckBox.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"

SwitchControl::SwitchControl(const char* name, const char* label, EpochPortal* portal)
    : ValueEntry(name, B_HORIZONTAL, portal),
      box_(new BCheckBox("switch", label, new BMessage(kSwitched))) {
    AddChild(box_);
}

void SwitchControl::AttachedToWindow() {
    box_->SetTarget(this);
}

bool SwitchControl::IsOn() const {
    return box_->Value() != B_CONTROL_OFF;
}

void SwitchControl::ShowEnabled(bool isEnabled) {
    box_->SetEnabled(isEnabled);
}

void SwitchControl::Present(const std::optional<bool>& value, bool /*replacesAll*/) {
    box_->SetValue(value.value_or(false) ? B_CONTROL_ON : B_CONTROL_OFF);
}

void SwitchControl::MessageReceived(BMessage* message) {
    if (message->what != kSwitched) return Entry::MessageReceived(message);
    // Not the box's own value: a refresh may have been handled since.
    int32 value = B_CONTROL_OFF;
    message->FindInt32(kValueField, &value);
    const Source source = Shown();
    if (source && !CommitEntry(Portal(), *source.factory, value != B_CONTROL_OFF))
        Present(source.value, false);
}
