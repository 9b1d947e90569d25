// An entry of a switch: a check box. Rules as for Entry; nothing of it is ever pending.
#pragma once

#include "Interface Widgets/Entry.h"

class BCheckBox;

class SwitchControl : public ValueEntry<bool> {
public:
    SwitchControl(const char* name, const char* label, EpochPortal* portal);

    // What is shown.
    [[nodiscard]] bool IsOn() const;

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;

protected:
    bool CommitPending() override { return false; }
    void Present(const std::optional<bool>& value, bool replacesAll) override;
    void ShowEnabled(bool isEnabled) override;

private:
    static constexpr uint32 kSwitched = FourCC("swen");

    BCheckBox* const box_;
};
