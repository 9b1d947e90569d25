// A knob on a line between two values. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BControl.h"

class BSlider : public BControl {
public:
    // `message` is sent when the user lets go of the knob, or of the key that moves it.
    BSlider(const char* name, const char* label, BMessage* message, int32 minimum, int32 maximum);

    void SetLabel(const char* label) override;
    void SetValue(int32 value) override;
    // Texts below the two ends.
    void SetLimitLabels(const char* minimum, const char* maximum);
    // How far an arrow key and a page key move the knob.
    void SetSteps(int32 arrow, int32 page);

    // Sent, if set, whenever the value changes under the user's hand. Takes it over.
    void SetModificationMessage(BMessage* message) { modification_.reset(message); }

protected:
    void Changed(const BMessage& message) override;

private:
    const int32 minimum_;
    const int32 maximum_;
    std::unique_ptr<BMessage> modification_;
};
