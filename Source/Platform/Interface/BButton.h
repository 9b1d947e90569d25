// A push button. Rules as for BView.
#pragma once

#include "BControl.h"

class BButton : public BControl {
public:
    BButton(const char* name, const char* label, BMessage* message);

    // The default button of its window is pressed by the Enter key.
    void MakeDefault(bool isDefault);
};
