// A switch with a label; its value is B_CONTROL_ON or B_CONTROL_OFF. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BControl.h"

class BCheckBox : public BControl {
public:
    BCheckBox(const char* name, const char* label, BMessage* message);

    void SetLabel(const char* label) override;
    void SetValue(int32 value) override;
};
