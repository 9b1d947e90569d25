#include "MessageWindow.h"

#include <gtest/gtest.h>

#include "AppDriver.h"
#include "BoxHand.h"
#include "ProgramMessages.h"
#include "ResourceTexts.h"
#include "TestWindow.h"

namespace {

constexpr uint32 kNo = FourCC("no  ");
constexpr uint32 kMaybe = FourCC("mayb");
constexpr uint32 kYes = FourCC("yes ");

class MessageWindowTest : public testing::Test {
protected:
    void SetUp() override { owner_->Show(); }
    void TearDown() override {
        if (box_->Lock()) box_->Quit();
        owner_->LockAndQuit();
    }

    void Ask(const char* ownerName, const char* checkBox) {
        const BMessenger target(static_cast<BHandler*>(owner_));
        const error_option no{"No", BMessage(kNo), target};
        const error_option maybe{"Maybe", BMessage(kMaybe), {}};
        const error_option yes{"Yes", BMessage(kYes), target};
        box_ = new MessageWindow(7, owner_, {50, 50}, ownerName, false, "Really?", &no, &maybe,
                                 &yes, checkBox, texts_);
        title_ = box_->Title();
        box_->Show();
        BoxHand::WaitFor(title_);
    }
    // The codes of what came, and the state of the check box: " on", " off" or nothing.
    std::string Answers() {
        owner_->Settle();
        std::string answers;
        for (const BMessage& message : owner_->Take()) {
            void* doomed = nullptr;
            bool isOn = false;
            if (message.what == kYes) answers += "yes";
            if (message.what == kNo) answers += "no";
            if (message.what == kMaybe) answers += "maybe";
            if (message.FindBool("CheckBox", &isOn) == B_OK) answers += isOn ? " on" : " off";
            if (message.what == kDeleteMessageWindow &&
                message.FindPointer(kDoomedMessageWindow, &doomed) == B_OK && doomed == box_)
                answers += " closed";
        }
        return answers;
    }
    [[nodiscard]] bool Comes(const std::string& expected) {
        std::string all;
        return AppDriver::WaitUntil([&] { return (all += Answers()) == expected; });
    }

    const ResourceTexts texts_{&TestResources()};
    TestWindow* owner_ = new TestWindow;
    MessageWindow* box_ = nullptr;
    std::string title_;
};

TEST_F(MessageWindowTest, EnterGivesTheRightmostAnswerWithoutACheckBox) {
    Ask("Sample", nullptr);
    EXPECT_EQ(title_, "Orvek (Sample): Message");
    BoxHand::PressEnter(title_);
    EXPECT_TRUE(Comes("yes closed"));
    EXPECT_EQ(BoxHand::Count(title_), 0);
}

// Somebody who types when the box comes gives no other answer by accident.
TEST_F(MessageWindowTest, TheRightmostAnswerHasTheKeyboardAtFirst) {
    Ask(nullptr, "For good");
    BoxHand::PressSpace(title_);
    EXPECT_TRUE(Comes("yes off closed"));
}

TEST_F(MessageWindowTest, TheCheckBoxGoesWithTheAnswer) {
    Ask(nullptr, "For good");
    EXPECT_EQ(title_, "Orvek: Message");
    BoxHand::Tick(title_);
    BoxHand::Press(title_, "No");
    EXPECT_TRUE(Comes("no on closed"));
}

TEST_F(MessageWindowTest, OnlyTheFirstAnswerCounts) {
    Ask(nullptr, "For good");
    WindowServer::Perform([this] {
        for (const char* label : {"No", "Yes"})
            BoxHand::Press(title_, label);
    });
    EXPECT_TRUE(Comes("no off closed"));
    EXPECT_EQ(Answers(), "");
}

TEST_F(MessageWindowTest, EscapeAndAButtonWithoutATargetOnlyCloseIt) {
    Ask(nullptr, "For good");
    BoxHand::PressEscape(title_);
    EXPECT_TRUE(Comes(" closed"));
    if (box_->Lock()) box_->Quit();
    Ask(nullptr, nullptr);
    BoxHand::Press(title_, "Maybe");
    EXPECT_TRUE(Comes(" closed"));
}

}  // namespace
