#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSlider>
#include <QTest>

#include "BBox.h"
#include "BButton.h"
#include "BCheckBox.h"
#include "BGroupView.h"
#include "BMenuBar.h"
#include "BRadioButton.h"
#include "BSlider.h"
#include "BStringView.h"
#include "BTextControl.h"
#include "TestWindow.h"

namespace {

constexpr uint32 kUsed = FourCC("used");
constexpr uint32 kMoving = FourCC("movg");

class ControlTest : public testing::Test {
protected:
    void Show(BView* view) {
        window_->AddChild(view);
        window_->Show();
        window_->Settle();
        // Letters are for the active window only.
        WindowServer::Perform(
            [this] { ASSERT_TRUE(QTest::qWaitForWindowActive(window_->Widget())); });
    }

    void Click(const BView* view) {
        WindowServer::Perform([view] {
            auto* const button = FindWidget<QAbstractButton>(view);
            QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
        });
        window_->Settle();
    }

    void TearDown() override { window_->LockAndQuit(); }

    TestWindow* window_ = new TestWindow;
};

// Letters of the menu bar are taken, those that begin a label come first.
TEST_F(ControlTest, LettersOfLabelsGiveFieldsTheKeyboard) {
    auto* const bar = new BMenuBar("bar");
    bar->AddItem(new BMenu("File"));
    window_->AddChild(bar);
    auto* const column = new BGroupView("column", B_VERTICAL);
    std::vector<BView*> fields;
    for (const char* const text : {"First:", "Field & row:", "Mass:", "Radius:"}) {
        auto* const label = new BStringView("label", text);
        auto* const group = new BGroupView("field", B_HORIZONTAL);
        group->AddChild(new BTextControl("entry", text, "", new BMessage(kUsed)));
        label->SetField(*group);
        column->AddChild(label);
        column->AddChild(group);
        fields.push_back(group);
    }
    Show(column);
    const auto press = [&](Qt::Key key) {
        return WindowServer::Ask([&] {
            QTest::keyClick(window_->Widget(), key, Qt::AltModifier);
            for (std::size_t i = 0; i < fields.size(); i++)
                if (FindWidget<QLineEdit>(fields[i]) == window_->Widget()->focusWidget())
                    return static_cast<int>(i);
            return -1;
        });
    };
    // "First:" finds i, and then "Field & row:" e, since R belongs to "Radius:".
    EXPECT_EQ(press(Qt::Key_M), 2);
    EXPECT_EQ(press(Qt::Key_I), 0);
    EXPECT_EQ(press(Qt::Key_R), 3);
    EXPECT_EQ(press(Qt::Key_E), 1);
    EXPECT_EQ(press(Qt::Key_S), 1) << "nobody's letter";
}

TEST_F(ControlTest, ALetterPressesAButtonAndFollowsItsLabel) {
    auto* const column = new BGroupView("column", B_VERTICAL);
    auto* const button = new BButton("button", "Go", new BMessage(kUsed));
    auto* const box = new BCheckBox("box", "Orbit", new BMessage(kUsed));
    for (BView* const view : {static_cast<BView*>(button), static_cast<BView*>(box)})
        column->AddChild(view);
    Show(column);
    // A button that is pressed by its letter stays down for a moment.
    const auto presses = [&](Qt::Key key) {
        WindowServer::Perform([&] {
            QTest::keyClick(window_->Widget(), key, Qt::AltModifier);
            for (const auto* const pressed : window_->Widget()->findChildren<QAbstractButton*>())
                EXPECT_TRUE(QTest::qWaitFor([&] { return !pressed->isDown(); }));
        });
        window_->Settle();
        return window_->Take().size();
    };
    EXPECT_EQ(presses(Qt::Key_G), 1u);
    EXPECT_EQ(presses(Qt::Key_O), 1u);
    EXPECT_EQ(WindowServer::Ask([&] { return FindWidget<QAbstractButton>(box)->isChecked(); }),
              true);

    window_->Lock();
    button->SetLabel("Orbit & pause");
    window_->Unlock();
    EXPECT_EQ(presses(Qt::Key_G), 0u);
    EXPECT_EQ(presses(Qt::Key_O), 1u) << "still the check box's";
    EXPECT_EQ(presses(Qt::Key_P), 1u);
}

TEST_F(ControlTest, ButtonSendsItsMessage) {
    auto* const message = new BMessage(kUsed);
    message->AddString("own", "field");
    auto* const button = new BButton("button", "Press & hold", message);
    Show(button);
    Click(button);
    auto received = window_->Take();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].what, kUsed);
    std::string own;
    EXPECT_EQ(received[0].FindString("own", &own), B_OK);
    void* source = nullptr;
    EXPECT_EQ(received[0].FindPointer("source", &source), B_OK);
    EXPECT_EQ(source, button);
    EXPECT_TRUE(received[0].HasName("when", B_INT64_TYPE));

    window_->Lock();
    button->SetLabel("Pause");
    button->SetEnabled(false);
    window_->Unlock();
    Click(button);
    EXPECT_TRUE(window_->Take().empty());
    EXPECT_EQ(WindowServer::Ask([&] { return FindWidget<QAbstractButton>(button)->text(); }),
              QStringLiteral("&Pause"));
}

TEST_F(ControlTest, AClickOnAButtonThatIsBeingDisabledDoesNothing) {
    auto* const button = new BButton("button", "Go", new BMessage(kUsed));
    Show(button);
    window_->Lock();
    WindowServer::Perform([&] { FindWidget<QAbstractButton>(button)->click(); });
    button->SetEnabled(false);
    window_->Unlock();
    window_->Settle();
    EXPECT_TRUE(window_->Take().empty());
}

TEST_F(ControlTest, CheckBoxKeepsItsValueOnBothSides) {
    auto* const box = new BCheckBox("box", "On", new BMessage(kUsed));
    Show(box);
    for (const int32 expected : {1, 0, 1}) {
        Click(box);
        EXPECT_EQ(box->Value(), expected);
        int32 value = -1;
        const auto received = window_->Take();
        ASSERT_EQ(received.size(), 1u);
        EXPECT_EQ(received[0].FindInt32("value", &value), B_OK);
        EXPECT_EQ(value, expected);
    }
    window_->Lock();
    box->SetValue(B_CONTROL_OFF);
    window_->Unlock();
    window_->Settle();
    EXPECT_TRUE(window_->Take().empty());
    EXPECT_FALSE(WindowServer::Ask([&] { return FindWidget<QAbstractButton>(box)->isChecked(); }));
}

TEST_F(ControlTest, OneRadioButtonIsOn) {
    auto* const box = new BBox("box", "Axis");
    std::vector<BRadioButton*> buttons;
    for (const char* name : {"X", "Y", "Z"}) {
        buttons.push_back(new BRadioButton(name, name, new BMessage(kUsed)));
        box->AddChild(buttons.back());
    }
    buttons[2]->SetValue(B_CONTROL_ON);
    Show(box);
    const auto isOnly = [&](std::size_t on) {
        for (std::size_t i = 0; i < buttons.size(); i++) {
            EXPECT_EQ(buttons[i]->Value(), i == on ? 1 : 0);
            EXPECT_EQ(WindowServer::Ask(
                          [&] { return FindWidget<QAbstractButton>(buttons[i])->isChecked(); }),
                      i == on);
        }
    };
    isOnly(2);
    Click(buttons[0]);
    isOnly(0);
    window_->Lock();
    buttons[1]->SetValue(B_CONTROL_ON);
    window_->Unlock();
    window_->Settle();
    isOnly(1);
    window_->Lock();
    buttons[1]->SetValue(B_CONTROL_OFF);
    window_->Unlock();
    window_->Settle();
    isOnly(3);
}

TEST_F(ControlTest, SliderTellsWhileItMovesAndWhenItRests) {
    auto* const slider = new BSlider("slider", "Smoothness", new BMessage(kUsed), 1, 100);
    slider->SetModificationMessage(new BMessage(kMoving));
    slider->SetLimitLabels("Smooth", "Jagged");
    slider->SetHashMarks(5);
    slider->SetValue(500);
    EXPECT_EQ(slider->Value(), 100);
    Show(slider);
    WindowServer::Perform([&] {
        auto* const widget = FindWidget<QSlider>(slider);
        widget->setSliderDown(true);
        widget->setSliderPosition(40);
        widget->setSliderPosition(30);
        widget->setSliderDown(false);
    });
    window_->Settle();
    EXPECT_EQ(slider->Value(), 30);
    int32 resting = 0;
    int32 moving = 0;
    for (const BMessage& message : window_->Take())
        (message.what == kUsed ? resting : moving)++;
    EXPECT_EQ(resting, 1);
    EXPECT_GE(moving, 2);
    WindowServer::Perform([&] { QTest::keyClick(FindWidget<QSlider>(slider), Qt::Key_Right); });
    window_->Settle();
    EXPECT_EQ(slider->Value(), 31);
}

TEST_F(ControlTest, TypedTextIsPendingUntilItIsEntered) {
    auto* const text = new BTextControl("text", "Mass:", "1.0", new BMessage(kUsed));
    Show(text);
    const auto type = [&](const char* keys) {
        WindowServer::Perform([&] {
            auto* const line = FindWidget<QLineEdit>(text);
            line->selectAll();
            QTest::keyClicks(line, keys);
        });
    };
    EXPECT_EQ(text->PendingText(), std::nullopt);
    type("2.5");
    // Without the window's lock, even while somebody else holds it.
    window_->Lock();
    std::optional<std::string> pending;
    std::thread([&] { pending = text->PendingText(); }).join();
    EXPECT_EQ(pending, "2.5");
    EXPECT_EQ(text->Text(), "1.0");
    window_->Unlock();
    WindowServer::Perform([&] { QTest::keyClick(FindWidget<QLineEdit>(text), Qt::Key_Return); });
    window_->Settle();
    EXPECT_EQ(text->Text(), "2.5");
    EXPECT_EQ(text->PendingText(), std::nullopt);
    EXPECT_EQ(window_->Take().size(), 1u);

    // Enter without a change says nothing.
    WindowServer::Perform([&] { QTest::keyClick(FindWidget<QLineEdit>(text), Qt::Key_Return); });
    window_->Settle();
    EXPECT_TRUE(window_->Take().empty());

    type("3.5");
    EXPECT_EQ(text->TakePendingText(), "3.5");
    WindowServer::Perform([&] { FindWidget<QLineEdit>(text)->clearFocus(); });
    window_->Settle();
    EXPECT_EQ(text->Text(), "3.5");
    EXPECT_TRUE(window_->Take().empty());

    // Entered, but the window has not heard of it yet.
    type("3.7");
    window_->Lock();
    WindowServer::Perform([&] { QTest::keyClick(FindWidget<QLineEdit>(text), Qt::Key_Return); });
    EXPECT_EQ(text->TakePendingText(), "3.7");
    EXPECT_EQ(text->TakePendingText(), std::nullopt);
    window_->Unlock();
    window_->Settle();
    EXPECT_EQ(text->Text(), "3.7");
    EXPECT_EQ(text->PendingText(), std::nullopt);
    window_->Take();

    type("4");
    window_->Lock();
    text->SetText("5");
    window_->Unlock();
    window_->Settle();
    EXPECT_EQ(text->PendingText(), std::nullopt);
    EXPECT_EQ(WindowServer::Ask([&] { return FindWidget<QLineEdit>(text)->text(); }),
              QStringLiteral("5"));
}

TEST_F(ControlTest, ANewTargetGetsTheMessages) {
    auto* const other = new TestWindow;
    other->Show();
    auto* const button = new BButton("button", "Cancel", new BMessage(kUsed));
    button->SetTarget(other);
    Show(button);
    Click(button);
    other->Settle();
    EXPECT_TRUE(window_->Take().empty());
    EXPECT_EQ(other->Take().size(), 1u);
    other->LockAndQuit();
    Click(button);  // nobody is there
    EXPECT_TRUE(window_->Take().empty());
}

}  // namespace
