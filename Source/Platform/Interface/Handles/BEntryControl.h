// A line of text that stands for a value which others own and may change, and whose half-typed text
// any thread may take. What is typed stays with the control until it is taken, so there is no
// moment at which it is nowhere; the Enter key and leaving the field only send the message. Escape
// gives back how the value is written. Rules as for BView; but what stands under "Any thread" needs
// no lock.
//
// Whoever takes a text answers with AcceptText or RefuseText. Until then, and while the user goes
// on typing, the line keeps its letters: "3." is not turned into "3" under the user's hand. What
// was refused stays, marked, until the user changes it or gives it up.
#pragma once

#include <optional>
#include <string>

#include "Platform/Interface/Handles/BControl.h"
#include "Platform/Interface/Server/LineText.h"

class BEntryControl : public BControl {
public:
    using Writing = LineText::Writing;

    // The label is what a screen reader says.
    BEntryControl(const char* name, const char* label, BMessage* message);

    // Shows this text, whatever was typed or is in somebody's hands.
    void SetText(const Writing& text);
    // The user can only read and copy it.
    void SetEditable(bool isEditable);
    // What stands there is grey, and edited all the same.
    void SetFaded(bool isFaded);
    // Room for so many characters, and no wish for more.
    void SetColumns(int32 count);
    void SetRightAligned(bool isRightAligned);
    void SelectAll();

    // --- Any thread ---
    // The value is now written like this. What is typed and was not taken stays.
    void ShowText(const Writing& text);
    // What the user has typed and nobody has taken, finished or not; nothing if there is none.
    std::optional<std::string> TakeText();
    // What was taken is usually written like this: shown when the user has finished.
    void AcceptText(const Writing& text);
    // What was taken is invalid: it is marked, and `why` said; the value is still written like
    // `text`. While the user is still typing it was only a beginning, which is nobody's yet.
    void RefuseText(const Writing& text, const char* why);

protected:
    void Changed(const BMessage& message) override;
};
