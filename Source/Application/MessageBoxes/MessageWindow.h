// A small box that says or asks something: a text, up to three buttons, and a check box if asked
// for. Every button sends a message of its maker's. The Enter key presses the rightmost button, the
// Escape key closes the box as its close box does. Made by its owner's thread, shown by it, and
// deleted by it when it asks for that ("klms"); otherwise the rules of BWindow.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/BWindow.h"

class BCheckBox;
class BView;
class InterfaceTexts;

// One button of a box.
struct error_option {
    std::string label;
    BMessage message;
    BMessenger target;  // not valid: the button only closes the box
};

class MessageWindow : public BWindow {
public:
    // Ids of the questions and boxes of the program.
    static constexpr int32 kSaveConfirmation = 1;
    static constexpr int32 kAbout = 2;
    static constexpr int32 kBuilding = 3;
    static constexpr int32 kRecovery = 4;
    static constexpr int32 kNotFound = 5;
    static constexpr int32 kNoGuide = 6;

    // To a box that was made and not yet shown, whose owner may be busy: show yourself.
    static constexpr uint32 kShowSelf = FourCC("shwb");

    // bool, of the answer of a box with a check box
    static constexpr const char* kCheckBoxField = "CheckBox";

    // `owner` gets "klms" with pointer "Doomed Msg Window" when the box has closed. Without an
    // owner's name the title is the general one. `isCentered`: in the middle of the screen instead
    // of at `where`. Null options: no such button. The check box only with a label. Texts are not
    // owned; the options and texts are copied.
    MessageWindow(int32 id, BLooper* owner, BPoint where, const char* ownerName, bool isCentered,
                  const char* text, const error_option* left, const error_option* middle,
                  const error_option* right, const char* checkBoxLabel,
                  const InterfaceTexts& texts);

    [[nodiscard]] int32 ID() const { return id_; }
    // Sends the option's message, with kCheckBoxField if there is a check box, and closes. Only
    // the first answer counts.
    void DoMessage(const error_option& option);

    void MessageReceived(BMessage* message) override;
    // Asks the owner to delete the box, and does not agree.
    bool QuitRequested() override;

private:
    BView* MakeButtons(BButton** last) const;

    const int32 id_;
    const BMessenger owner_;
    // From left to right.
    const std::array<std::optional<error_option>, 3> options_;
    BCheckBox* checkBox_ = nullptr;
    bool isDone_ = false;
};
