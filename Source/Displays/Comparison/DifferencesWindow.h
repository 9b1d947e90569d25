// A text that can be read and copied: what two epochs differ by, or how far a run can be believed.
// Closing it ends it. Rules as for BWindow.
#pragma once

#include <string>

#include "Platform/Interface/Handles/BWindow.h"

class BPageView;

class DifferencesWindow : public BWindow {
public:
    // To it: another text.
    static constexpr uint32 kText = FourCC("dftx");
    static constexpr const char* kTextField = "text";

    // The place is that of its left-top corner.
    DifferencesWindow(BPoint at, const std::string& text, const std::string& title);

    void MessageReceived(BMessage* message) override;

private:
    BPageView* const page_;
};
