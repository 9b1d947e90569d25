// Asks which systems to join in a group, and for the group's name. Made, shown and quit by the
// simulation's window, which it tells "grup" (string "Name", int64 "Body ID" for each system) and
// then, however it was closed, "kgrp". Offers the systems that are beside the one in focus, which
// is chosen at first. Rules of SubWindow.
#pragma once

#include <string>
#include <vector>

#include "Interface Widgets/SubWindow.h"

class BButton;
class BCheckBox;
class BGroupView;
class BTextControl;

class GroupWindow : public SubWindow {
public:
    static constexpr uint32 kGroup = FourCC("grup");
    static constexpr uint32 kClosed = FourCC("kgrp");
    static constexpr const char* kNameField = "Name";

    struct Choice {
        int64 id;
        std::string name;
        bool isChosen;
    };

    GroupWindow(BPoint at, const std::vector<Choice>& choices, BLooper* owner,
                const InterfaceTexts* texts);

    void MessageReceived(BMessage* message) override;
    bool QuitRequested() override;

private:
    BGroupView* MakeChoices(const std::vector<Choice>& choices);
    BView* MakeButtons();
    void Group();
    void EnableGroup();

    struct Row {
        int64 id;
        BCheckBox* box;
    };
    std::vector<Row> rows_;
    BTextControl* name_ = nullptr;
    BButton* group_ = nullptr;
};
