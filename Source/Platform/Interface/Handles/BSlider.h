// A knob on a line between two values. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BControl.h"

class BSlider : public BControl {
public:
    // `message` is sent when the user lets go of the knob, or of the key that moves it.
    BSlider(const char* name, const char* label, BMessage* message, int32 minimum, int32 maximum);

    void SetLabel(const char* label) override;
    void SetValue(int32 value) override;
    [[nodiscard]] int32 Minimum() const { return minimum_; }
    [[nodiscard]] int32 Maximum() const { return maximum_; }
    void SetLimits(int32 minimum, int32 maximum);
    // Texts below the two ends.
    void SetLimitLabels(const char* minimum, const char* maximum);
    // `count` marks along the line, 0 for none.
    void SetHashMarks(int32 count);
    // How far an arrow key and a page key move the knob.
    void SetSteps(int32 arrow, int32 page);

    // Sent, if set, whenever the value changes under the user's hand. Takes it over.
    void SetModificationMessage(BMessage* message) { modification_.reset(message); }
    [[nodiscard]] BMessage* ModificationMessage() const { return modification_.get(); }

protected:
    void Changed(const BMessage& message) override;

private:
    int32 minimum_;
    int32 maximum_;
    std::unique_ptr<BMessage> modification_;
};
