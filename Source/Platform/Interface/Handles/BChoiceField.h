// A field that shows one text of a list and lets the user choose another, quick with thousands:
// where a menu would be too long. Rules as for BView.
#pragma once

#include <vector>

#include "Platform/Interface/Handles/BControl.h"

class BChoiceField : public BControl {
public:
    struct Choice {
        int64 id = 0;  // names it, whatever its place
        std::string text;
        int32 level = 0;  // how deep it is nested; shown in the open list
    };

    // `message` is sent when the user has chosen, with int64 "id". The label is what a screen
    // reader says.
    BChoiceField(const char* name, const char* label, BMessage* message);

    // Replaces the list; nothing is chosen then.
    void SetChoices(std::vector<Choice> choices);
    // Sends nothing. Nothing is chosen if there is no such choice.
    void Choose(int64 id);
    // The field is at least so many characters wide, whatever the texts.
    void SetColumns(int32 count);

protected:
    void Changed(const BMessage& message) override;
};
