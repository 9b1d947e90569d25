// A text that the user reads. Rules as for BView.
#pragma once

#include "Platform/Interface/Handles/BView.h"

class BStringView : public BView {
public:
    BStringView(const char* name, const char* text);

    [[nodiscard]] const std::string& Text() const { return text_; }
    void SetText(const char* text);
    // The text is the label of that field of the same window: the Alt key and a letter of the text,
    // which the window chooses when it is shown, give it the keyboard.
    void SetField(const BView& field);
    // Breaks lines that are longer than this, in logical pixels, and asks for the room they then
    // take. For a text that does not change.
    void LimitWidth(float width);
    // A click on it posts this to the window.
    void SetClickMessage(uint32 what);
    // The user can select and copy the text.
    void SetSelectable(bool isSelectable);

protected:
    void Changed(const BMessage& message) override;

private:
    std::string text_;
    uint32 click_ = 0;  // 0: none
};
