// A line whose text any thread may take, and a list whose choices are known by their identifiers,
// as a user finds them.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QTest>

#include "Platform/Interface/Handles/BChoiceField.h"
#include "Platform/Interface/Handles/BEntryControl.h"
#include "Tests/Platform/Interface/TestWindow.h"

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
    // Beside the text, as a user does who means the field and no letter.
    void Click(int times = 1) {
        window_->ByHand([&] {
            QLineEdit* const line = Line();
            const QPoint place(line->width() - 8, line->height() / 2);
            QTest::mouseClick(line, Qt::LeftButton, {}, place);
            if (times > 1) QTest::mouseDClick(line, Qt::LeftButton, {}, place);
        });
    }
    void LeaveWith(Qt::Key key) {
        window_->ByHand([&] { QTest::keyClick(Line()->window()->focusWidget(), key); });
    }
    [[nodiscard]] bool IsMarked() const {
        return WindowServer::Ask([&] {
            return Line()->palette().color(QPalette::Base) !=
                   QApplication::palette().color(QPalette::Base);
        });
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

TEST_F(EntryControlTest, EnterIsOneMessageAndTakingAsksTheServerNothing) {
    Type("2");
    const int before = window_->dispatched;
    Press(Qt::Key_Return);
    EXPECT_EQ(window_->dispatched - before, 1);
    const BMessage message = window_->TakeOne();
    EXPECT_EQ(message.what, kUsed);
    void* source = nullptr;
    EXPECT_EQ(message.FindPointer("source", &source), B_OK);
    EXPECT_EQ(source, entry_);

    const int64 asked = WindowServer::CountQuestions();
    EXPECT_EQ(entry_->TakeText(), "2");
    EXPECT_EQ(WindowServer::CountQuestions(), asked);
}

// Else a name that is no text, as a damaged document may have, would be an edit.
TEST_F(EntryControlTest, WhatTheLineCannotHoldAsItIsWasNotTyped) {
    entry_->SetText("Kor\xff");
    window_->Settle();
    EXPECT_EQ(entry_->TakeText(), std::nullopt);
}

TEST_F(EntryControlTest, WhatWillBeReplacedIsNotTaken) {
    Type("2");
    window_->ByHand([this] {
        // The server is busy: what is asked for waits.
        entry_->SetText("5");
        EXPECT_EQ(entry_->TakeText(), std::nullopt);
    });
    EXPECT_EQ(Text(), "5");
    Type("6");
    EXPECT_EQ(entry_->TakeText(), "56");
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

// "Click into the field, type Star": nobody who does that wants "ArrakisStar".
TEST_F(EntryControlTest, TheFirstClickTheTabKeyAndEnterSelectAll) {
    entry_->SetText("Arrakis");
    LeaveWith(Qt::Key_Tab);
    Click();
    Type("Star");
    EXPECT_EQ(Text(), "Star");
    Press(Qt::Key_Return);
    Type("Sun");
    EXPECT_EQ(Text(), "Sun");
    // The second click is into a field that has the keyboard: it sets the cursor.
    Click();
    Type("ny");
    EXPECT_EQ(Text(), "Sunny");
    LeaveWith(Qt::Key_Tab);
    LeaveWith(Qt::Key_Backtab);
    Type("Dune");
    EXPECT_EQ(Text(), "Dune");
    // A drag means what it goes over.
    LeaveWith(Qt::Key_Tab);
    entry_->SetText("Big blue");
    window_->ByHand([&] {
        QLineEdit* const line = Line();
        line->setCursorPosition(4);
        const QPoint to = line->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        const QPoint from(line->width() - 8, to.y());
        QTest::mousePress(line, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, to, line->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                         {});
        QCoreApplication::sendEvent(line, &move);
        QTest::mouseRelease(line, Qt::LeftButton, {}, to);
        EXPECT_EQ(line->selectedText().toStdString(), "blue");
    });
    // A double click means a word.
    LeaveWith(Qt::Key_Tab);
    entry_->SetText("Big red");
    Click(2);
    Type("blue");
    EXPECT_EQ(Text(), "Big blue");
}

TEST_F(EntryControlTest, AllDigitsAreWhereTheKeyboardIsAndNoneIsLost) {
    const BEntryControl::Writing third("0.3333333333333333", "0.3333333");
    entry_->SetText(third);
    EXPECT_EQ(Text(), "0.3333333333333333");
    LeaveWith(Qt::Key_Tab);
    EXPECT_EQ(Text(), "0.3333333");
    EXPECT_EQ(entry_->TakeText(), std::nullopt) << "nobody has edited it";
    entry_->ShowText({"0.6666666666666666", "0.6666667"});
    EXPECT_EQ(Text(), "0.6666667");
    // The way in and out again is no edit, and what is copied on it is exact.
    Click();
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(WindowServer::Ask([] { return QApplication::clipboard()->text().toStdString(); }),
              "0.6666666666666666");
    LeaveWith(Qt::Key_Tab);
    EXPECT_TRUE(window_->Take().empty());
    EXPECT_EQ(entry_->TakeText(), std::nullopt);
    // Whoever types the seven digits means them.
    Click();
    Type("0.6666667");
    LeaveWith(Qt::Key_Tab);
    EXPECT_EQ(window_->Take().size(), 1u);
    EXPECT_EQ(entry_->TakeText(), "0.6666667");
    entry_->AcceptText("0.6666667");
    // A text that is dropped comes into the full number.
    entry_->SetText(third);
    EXPECT_EQ(Text(), "0.3333333");
    window_->ByHand([&] {
        QMimeData data;
        data.setText("1");
        QDragEnterEvent enter(QPoint(Line()->width() - 4, 4), Qt::CopyAction, &data, Qt::LeftButton,
                              {});
        QCoreApplication::sendEvent(Line(), &enter);
        QDropEvent drop(QPointF(Line()->width() - 4, 4), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(Line(), &drop);
    });
    EXPECT_EQ(Text(), "0.33333333333333331");
}

// As when a run is started from a display.
TEST_F(EntryControlTest, ALineThatIsDisabledBehindAnotherWindowIsNotSelected) {
    QPointer<QWidget> other;
    WindowServer::Perform([&] {
        other = new QWidget;
        other->show();
        other->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(other));
    });
    window_->Do([&] { entry_->SetEnabled(false); });
    entry_->ShowText({"0.3333333333333333", "0.3333333"});
    EXPECT_EQ(Text(), "0.3333333");
    EXPECT_FALSE(WindowServer::Ask([&] { return Line()->hasSelectedText(); }));
    WindowServer::Perform([&] { delete other; });
}

TEST_F(EntryControlTest, WhatWasRefusedStaysMarkedUntilEscape) {
    Type("heavy");
    Press(Qt::Key_Return);
    EXPECT_EQ(entry_->TakeText(), "heavy");
    entry_->RefuseText("1", "no number");
    EXPECT_TRUE(IsMarked());
    window_->Take();
    // Nor do leaving it, another value and who asks for what is pending change that.
    LeaveWith(Qt::Key_Tab);
    entry_->ShowText("2");
    EXPECT_EQ(entry_->TakeText(), std::nullopt);
    EXPECT_TRUE(window_->Take().empty());
    EXPECT_EQ(Text(), "heavy");
    EXPECT_TRUE(IsMarked());
    // Enter asks again.
    Click();
    Press(Qt::Key_Return);
    EXPECT_EQ(window_->Take().size(), 1u);
    EXPECT_EQ(entry_->TakeText(), "heavy");
    entry_->RefuseText("2", "no number");
    EXPECT_TRUE(IsMarked());
    Press(Qt::Key_Escape);
    EXPECT_EQ(Text(), "2");
    EXPECT_FALSE(IsMarked());
    // Or it is mended.
    Type("2x");
    EXPECT_EQ(entry_->TakeText(), "2x");
    Press(Qt::Key_Return);
    entry_->RefuseText("2", "no unit");
    Type("3");
    EXPECT_FALSE(IsMarked());
    EXPECT_EQ(entry_->TakeText(), "3");
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
