// A push button. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BControl.h"

class BButton : public BControl {
public:
    BButton(const char* name, const char* label, BMessage* message);

    void SetLabel(const char* label) override;
};
