// An entry of a positive number without a unit: a slider that goes through some chosen numbers, and
// a line in a sentence for any other. While the knob is held the line follows; letting go is one
// edit. Rules as for Entry.
#pragma once

#include <vector>

#include "Interface Widgets/Entry.h"

class BSlider;
class InterfaceTexts;
class NumberTextControl;

class SliderControl : public ValueEntry<double> {
public:
    struct Texts {
        std::string title;
        std::string left;  // below the slider's ends
        std::string right;
        std::string before;  // around the number
        std::string after;
    };

    // `stops`: what the slider goes through from left to right, positive and in order, upwards or
    // downwards.
    SliderControl(const char* name, const Texts& labels, std::vector<double> stops,
                  EpochPortal* portal, const InterfaceTexts& texts);

    void AttachedToWindow() override;
    void MessageReceived(BMessage* message) override;

protected:
    bool CommitPending() override;
    void Present(const std::optional<double>& value, bool replacesAll) override;
    void ShowEnabled(bool isEnabled) override;

private:
    static constexpr uint32 kMoving = FourCC("slmv");
    static constexpr uint32 kMoved = FourCC("slen");

    [[nodiscard]] int32 NearestStop(double value) const;
    [[nodiscard]] double StopAt(const BMessage& message) const;

    const std::vector<double> stops_;
    BSlider* const slider_;
    NumberTextControl* const number_;
    bool isHeld_ = false;
};
