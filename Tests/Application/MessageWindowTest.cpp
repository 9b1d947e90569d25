#include "Application/MessageBoxes/MessageWindow.h"

#include <gtest/gtest.h>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Tests/Application/AppDriver.h"
#include "Tests/Application/WindowHand.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

using WindowHand::Key;

constexpr uint32 kNo = FourCC("no  ");
constexpr uint32 kYes = FourCC("yes ");

// What came since the last time, and the state of the check box: "on", "off" or nothing.
std::string Answers(TestWindow* owner, const MessageWindow* box) {
    owner->Settle();
    std::string answers;
    for (const BMessage& message : owner->Take()) {
        void* doomed = nullptr;
        bool isOn = false;
        if (message.what == kYes) answers += "yes ";
        if (message.what == kNo) answers += "no ";
        if (message.FindBool("CheckBox", &isOn) == B_OK) answers += isOn ? "on " : "off ";
        if (message.what == kDeleteMessageWindow &&
            message.FindPointer(kDoomedMessageWindow, &doomed) == B_OK && doomed == box)
            answers += "closed";
    }
    return answers;
}

TEST(MessageWindow, GivesOneAnswerWithTheCheckBoxIfThereIsOne) {
    constexpr const char* kCheckBox = "For good";
    struct Case {
        const char* checkBox;
        std::optional<Key> key;
        std::vector<const char*> clicks;  // in one moment
        const char* answers;
    };
    const Case cases[] = {
        {nullptr, Key::kEnter, {}, "yes closed"},
        // Somebody who types when the box comes gives no other answer by accident.
        {kCheckBox, Key::kSpace, {}, "yes off closed"},
        {kCheckBox, Key::kEscape, {}, "closed"},
        {kCheckBox, {}, {kCheckBox, "No"}, "no on closed"},
        {kCheckBox, {}, {"No", "Yes"}, "no off closed"},
        {nullptr, {}, {"Nowhere"}, "closed"},
    };
    const ResourceTexts texts(&TestResources());
    auto* const owner = new TestWindow;
    owner->Show();
    const BMessenger target(static_cast<BHandler*>(owner));
    const error_option no{"No", BMessage(kNo), target};
    const error_option nowhere{"Nowhere", BMessage(kNo), {}};
    const error_option yes{"Yes", BMessage(kYes), target};
    for (const Case& use : cases) {
        SCOPED_TRACE(&use - cases);
        const char* const sample = use.checkBox == nullptr ? "Sample" : nullptr;
        const std::string title = sample ? "Orvek (Sample): Message" : "Orvek: Message";
        auto* const box = new MessageWindow(7, owner, {50, 50}, sample, false, "Really?", &no,
                                            &nowhere, &yes, use.checkBox, texts);
        box->Show();
        WindowHand::WaitFor(title);
        if (use.key) WindowHand::Press(title, *use.key);
        WindowServer::Perform([&] {
            for (const char* const label : use.clicks)
                WindowHand::Click(title, label);
        });
        std::string answers;
        EXPECT_TRUE(AppDriver::WaitUntil(
            [&] { return (answers += Answers(owner, box)).ends_with("closed"); }));
        EXPECT_EQ(answers + Answers(owner, box), use.answers);
        EXPECT_EQ(WindowHand::Count(title), 0);
        if (box->Lock()) box->Quit();
    }
    owner->LockAndQuit();
}

}  // namespace
