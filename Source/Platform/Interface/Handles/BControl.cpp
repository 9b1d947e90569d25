#include "Platform/Interface/Handles/BControl.h"

#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Server/ViewPart.h"

BControl::BControl(const char* name, const char* label, BMessage* message,
                   std::shared_ptr<ViewPart> part)
    : BView(name, std::move(part)), BInvoker(message), label_(label == nullptr ? "" : label) {}

void BControl::SetLabel(const char* label) {
    label_ = label == nullptr ? "" : label;
}

void BControl::SetValue(int32 value) {
    value_ = value;
}

void BControl::SetEnabled(bool isEnabled) {
    if (isEnabled == isEnabled_) return;
    isEnabled_ = isEnabled;
    ChangePart<ViewPart>(Part(), [=](ViewPart& part) { part.SetEnabled(isEnabled); });
}

status_t BControl::Invoke(const BMessage* message) {
    if (message == nullptr) message = Message();
    if (message == nullptr) return B_BAD_VALUE;
    const BMessage invocation = Invocation(*message);
    return BInvoker::Invoke(&invocation);
}

BMessage BControl::Invocation(const BMessage& message) const {
    BMessage copy(message);
    copy.AddInt64(kWhenField, system_time());
    copy.AddPointer(kSourceField, this);
    copy.AddInt32(kValueField, value_);
    return copy;
}

BMessenger BControl::DefaultTarget() const {
    return Window() == nullptr ? BMessenger{} : BMessenger(Window());
}

void BControl::Changed(const BMessage& message) {
    int32 value = 0;
    if (message.FindInt32(kValueField, &value) == B_OK) value_ = value;
    // It was disabled after the user had used it.
    if (isEnabled_) Invoke();
}
