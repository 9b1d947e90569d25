// A button that shows a colour; pressed, it opens the desktop's colour dialog, which blocks
// nothing. The message is sent when the user has chosen a colour, or has taken the choice back.
// Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BControl.h"
#include "Platform/Support/GraphicsDefs.h"

class BColorControl : public BControl {
public:
    // The label is the dialog's title and what a screen reader says.
    BColorControl(const char* name, const char* label, BMessage* message);

    // The value is the colour as 0xrrggbb.
    [[nodiscard]] rgb_color ValueAsColor() const;
    void SetValue(int32 value) override;
    void SetValue(rgb_color color);

    // Sent, if set, at every colour that the user looks at in the dialog. Takes it over.
    void SetModificationMessage(BMessage* message) { modification_.reset(message); }

protected:
    void Changed(const BMessage& message) override;

private:
    std::unique_ptr<BMessage> modification_;
};
