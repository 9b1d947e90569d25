// An entry of a text, such as a name. Rules as for Entry.
#pragma once

#include "Interface Widgets/Entry.h"
#include "Platform/Interface/Handles/BEntryControl.h"

class InterfaceTexts;

class MyTextControl : public ValueEntry<std::string> {
public:
    // `label` is what a screen reader says.
    MyTextControl(const char* name, const char* label, EpochPortal* portal,
                  const InterfaceTexts& texts);

    void SetFaded(bool isFaded) override { line_->SetFaded(isFaded); }
    void AttachedToWindow() override;

protected:
    bool CommitPending() override;
    void Present(const std::optional<std::string>& value, bool replacesAll) override;
    void ShowEnabled(bool isEnabled) override;

private:
    const InterfaceTexts& texts_;
    BEntryControl* const line_;
};
