// A line whose text any thread may take, and a list whose choices are known by their identifiers,
// as a user finds them.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include "BChoiceField.h"
#include "BEntryControl.h"
#include "TestWindow.h"

namespace {

constexpr uint32 kUsed = FourCC("used");
constexpr uint32 kUndoKey = FourCC("undk");

class EntryControlTest : public WindowFixture {
protected:
    void SetUp() override {
        window_->AddShortcut('z', 0, new BMessage(kUndoKey));
        window_->AddChild(entry_);
        entry_->SetText("1");
        Show(choice_);
        window_->ByHand([&] {
            Line()->setFocus();
            Line()->selectAll();
        });
    }

    [[nodiscard]] QLineEdit* Line() const { return FindWidget<QLineEdit>(entry_); }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        window_->ByHand([&] { QTest::keyClick(Line(), key, modifiers); });
    }
    void Type(const char* keys) {
        WindowServer::Perform([&] { QTest::keyClicks(Line(), keys); });
    }
    std::string Text() {
        return WindowServer::Ask([&] { return Line()->text().toStdString(); });
    }

    BEntryControl* const entry_ = new BEntryControl("entry", "Mass", new BMessage(kUsed));
    BChoiceField* const choice_ = new BChoiceField("choice", "Body", new BMessage(kUsed));
};

}  // namespace

TEST_F(EntryControlTest, UndoIsTheLinesWhileSomethingIsTypedAndElseTheWindows) {
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(window_->TakeOne().what, kUndoKey);
    Type("25");
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(window_->Take().empty());
    EXPECT_NE(Text(), "25");
}

TEST_F(EntryControlTest, TextIsPendingUntilItIsTakenHoweverItIsFinished) {
    Type("2.50");
    Press(Qt::Key_Return);
    EXPECT_EQ(window_->Take().size(), 1u);
    // Nobody has taken it: it is still there, and a refresh does not hide that.
    entry_->ShowText("7");
    EXPECT_EQ(Text(), "2.50");
    EXPECT_EQ(entry_->TakeText(), "2.50");
    EXPECT_EQ(entry_->TakeText(), std::nullopt);
    // Not even in somebody's hands.
    entry_->ShowText("8");
    EXPECT_EQ(Text(), "2.50");
    entry_->AcceptText("2.5");
    EXPECT_EQ(Text(), "2.5");
    entry_->ShowText("9");
    EXPECT_EQ(Text(), "9");

    Type("4");
    Press(Qt::Key_Escape);
    EXPECT_EQ(Text(), "9");
    EXPECT_EQ(entry_->TakeText(), std::nullopt);
}

TEST_F(EntryControlTest, WhatIsTakenInTheMiddleStaysUnderTheHand) {
    Type("3.");
    EXPECT_EQ(entry_->TakeText(), "3.");
    entry_->AcceptText("3");
    entry_->ShowText("3");
    EXPECT_EQ(Text(), "3.");
    EXPECT_EQ(entry_->TakeText(), std::nullopt);
    Type("5x");
    EXPECT_EQ(entry_->TakeText(), "3.5x");
    entry_->RefuseText("3", "no number");
    EXPECT_EQ(Text(), "3.5x");
    EXPECT_EQ(entry_->TakeText(), "3.5x");
    // Another value, as after an undo, is shown at once; or the old one would come back.
    entry_->AcceptText("3.5");
    entry_->ShowText("1");
    EXPECT_EQ(Text(), "1");
    EXPECT_EQ(entry_->TakeText(), std::nullopt);
}

TEST_F(EntryControlTest, AChoiceIsKnownByItsIdentifierWhateverBecomesOfTheList) {
    choice_->SetChoices({{10, "Sun"}, {11, "Earth", 1}, {12, "Moon", 2}});
    choice_->Choose(12);
    WindowServer::Perform([&] {
        auto* const box = FindWidget<QComboBox>(choice_);
        EXPECT_EQ(box->currentText().toStdString(), "Moon");
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Up);
    });
    // Before the window hears of it.
    choice_->SetChoices({{11, "Terra"}});
    window_->Settle();
    int64 id = 0;
    EXPECT_EQ(window_->TakeOne().FindInt64("id", &id), B_OK);
    EXPECT_EQ(id, 11);
    choice_->Choose(99);
    EXPECT_EQ(WindowServer::Ask([&] { return FindWidget<QComboBox>(choice_)->currentIndex(); }),
              -1);
}

TEST_F(EntryControlTest, AListOfThousandsOpensAtOnce) {
    constexpr int kCount = 20000;
    constexpr bigtime_t kAtOnce = 200'000;
    std::vector<BChoiceField::Choice> choices;
    for (int i = 0; i < kCount; i++)
        choices.push_back({i, "Body " + std::to_string(i), i % 3});
    const bigtime_t start = system_time();
    choice_->SetChoices(std::move(choices));
    choice_->Choose(kCount - 1);
    WindowServer::Perform([&] { FindWidget<QComboBox>(choice_)->showPopup(); });
    EXPECT_LT(system_time() - start, kAtOnce);
}
