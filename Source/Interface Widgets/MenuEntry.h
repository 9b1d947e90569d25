// An entry of a small whole number: a menu of all that it may be. Rules as for Entry; nothing of it
// is ever pending.
#pragma once

#include "Interface Widgets/Entry.h"

class BMenu;
class BMenuField;

class MenuEntry : public ValueEntry<int32> {
public:
    // The numbers from `least` to `greatest`. `label` is what a screen reader says.
    MenuEntry(const char* name, const char* label, EpochPortal* portal, int32 least,
              int32 greatest);

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;

protected:
    bool CommitPending() override { return false; }
    void Present(const std::optional<int32>& value, bool replacesAll) override;
    void ShowEnabled(bool isEnabled) override;

private:
    static constexpr uint32 kChosen = FourCC("mnen");

    const int32 least_;
    BMenu* menu_ = nullptr;
    BMenuField* field_ = nullptr;
};
