// One of several switches in the same parent view of which one is on. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BControl.h"

class BRadioButton : public BControl {
public:
    BRadioButton(const char* name, const char* label, BMessage* message);

    void SetLabel(const char* label) override;
    // Turning it on turns the other radio buttons of its parent off.
    void SetValue(int32 value) override;

protected:
    void Changed(const BMessage& message) override;

private:
    void TurnOthersOff();
};
