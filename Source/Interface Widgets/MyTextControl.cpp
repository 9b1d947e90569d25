#include "Interface Widgets/MyTextControl.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BEntryControl.h"
#include "Resources/SettingsFeatures.h"

MyTextControl::MyTextControl(const char* name, const char* label, EpochPortal* portal,
                             const InterfaceTexts& texts)
    : ValueEntry(name, B_HORIZONTAL, portal),
      texts_(texts),
      line_(new BEntryControl("text", label, new BMessage(kEntered))) {
    AddChild(line_);
}

void MyTextControl::AttachedToWindow() {
    line_->SetTarget(this);
}

void MyTextControl::ShowEnabled(bool isEnabled) {
    line_->SetEnabled(isEnabled);
}

void MyTextControl::Present(const std::optional<std::string>& value, bool replacesAll) {
    const std::string text = value.value_or("");
    if (replacesAll)
        line_->SetText(text);
    else
        line_->ShowText(text);
}

bool MyTextControl::CommitPending() {
    std::optional<std::string> typed;
    const Source source = TakePending([&] { typed = line_->TakeText(); });
    if (!typed) return false;
    const std::string inForce = source.value.value_or("");
    if (!source || typed->find_first_not_of(' ') == std::string::npos) {
        line_->RefuseText(inForce, texts_.Text(kTextNameNeeded));
        return false;
    }
    line_->AcceptText(*typed);
    return CommitEntry(Portal(), *source.factory, *typed);
}
