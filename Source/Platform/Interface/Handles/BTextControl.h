// A line of text that the user can edit, with a label. What is being typed lives in the window
// server until it is entered with the Enter key or by leaving the field; then Text() becomes it and
// the message is sent. Rules as for BView, but TakePendingText needs no lock: any thread may take
// what is half typed.
#pragma once

#include <optional>

#include "Platform/Interface/Handles/BControl.h"

class BTextControl : public BControl {
public:
    BTextControl(const char* name, const char* label, const char* text, BMessage* message);

    void SetLabel(const char* label) override;
    // What was last set or entered.
    [[nodiscard]] const std::string& Text() const { return text_; }
    // Replaces what is being typed, too. Sends nothing.
    virtual void SetText(const char* text);

    // What the user has typed and not yet entered; nothing if there is none. It counts as entered:
    // no message will be sent for it. Text() follows when the window next handles messages.
    std::optional<std::string> TakePendingText();

    void SelectAll();

protected:
    void Changed(const BMessage& message) override;

private:
    std::string text_;
};
