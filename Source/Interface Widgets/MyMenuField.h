// An entry of a small whole number: a menu of all that it may be. Rules as for Entry; nothing of it
// is ever pending.
#pragma once

#include <string>
#include <vector>

#include "Interface Widgets/Entry.h"

class BMenu;
class BMenuField;

class MyMenuField : public ValueEntry<int32> {
public:
    // `numbers` ascend. What is between two of them shows as the next one. `label` is what a screen
    // reader says; `texts` stand for the numbers, which stand for themselves where there are none.
    MyMenuField(const char* name, const char* label, EpochPortal* portal,
                std::vector<int32> numbers, const std::vector<std::string>& texts = {});

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;

protected:
    bool CommitPending() override { return false; }
    void Present(const std::optional<int32>& value, bool replacesAll) override;
    void ShowEnabled(bool isEnabled) override;

private:
    static constexpr uint32 kChosen = FourCC("mnen");

    const std::vector<int32> numbers_;
    BMenu* menu_ = nullptr;
    BMenuField* field_ = nullptr;
};
