#include <gtest/gtest.h>

#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <thread>

#include "Platform/Interface/Handles/BBox.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BCheckBox.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Interface/Handles/BRadioButton.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/BTextControl.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

constexpr uint32 kUsed = FourCC("used");

class ControlTest : public WindowFixture {
protected:
    void Click(const BView* view) {
        window_->ByHand([view] {
            auto* const button = FindWidget<QAbstractButton>(view);
            QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
        });
    }

    static bool IsChecked(const BView* view) {
        return WindowServer::Ask([view] { return FindWidget<QAbstractButton>(view)->isChecked(); });
    }
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

TEST_F(ControlTest, LettersPressButtonsAndCheckBoxesAndFollowTheirLabels) {
    auto* const column = new BGroupView("column", B_VERTICAL);
    auto* const button = new BButton("button", "Go", new BMessage(kUsed));
    auto* const box = new BCheckBox("box", "Orbit", new BMessage(kUsed));
    column->AddChild(button);
    column->AddChild(box);
    Show(column);
    // A button that is pressed by its letter stays down for a moment.
    const auto presses = [&](Qt::Key key) {
        window_->ByHand([&] {
            QTest::keyClick(window_->Widget(), key, Qt::AltModifier);
            for (const auto* const pressed : window_->Widget()->findChildren<QAbstractButton*>())
                EXPECT_TRUE(QTest::qWaitFor([&] { return !pressed->isDown(); }));
        });
        return window_->Take().size();
    };
    EXPECT_EQ(presses(Qt::Key_G), 1u);
    EXPECT_EQ(presses(Qt::Key_O), 1u);
    EXPECT_TRUE(IsChecked(box));
    EXPECT_EQ(box->Value(), B_CONTROL_ON);
    window_->Do([&] {
        box->SetValue(B_CONTROL_OFF);
        button->SetLabel("Orbit & pause");
    });
    EXPECT_TRUE(window_->Take().empty()) << "nobody has used it";
    EXPECT_FALSE(IsChecked(box));
    EXPECT_EQ(presses(Qt::Key_G), 0u);
    EXPECT_EQ(presses(Qt::Key_O), 1u) << "still the check box's";
    EXPECT_EQ(presses(Qt::Key_P), 1u);
}

TEST_F(ControlTest, AButtonSendsItsMessageWhileItIsEnabled) {
    auto* const message = new BMessage(kUsed);
    message->AddString("own", "field");
    auto* const button = new BButton("button", "Press & hold", message);
    Show(button);
    Click(button);
    const BMessage received = window_->TakeOne();
    EXPECT_EQ(received.what, kUsed);
    EXPECT_TRUE(received.HasName("own"));
    void* source = nullptr;
    EXPECT_EQ(received.FindPointer("source", &source), B_OK);
    EXPECT_EQ(source, button);
    EXPECT_TRUE(received.HasName("when", B_INT64_TYPE));
    EXPECT_TRUE(received.HasName("value", B_INT32_TYPE));
    // It was disabled after the user had clicked on it.
    window_->Do([&] {
        WindowServer::Perform([&] { FindWidget<QAbstractButton>(button)->click(); });
        button->SetEnabled(false);
    });
    EXPECT_TRUE(window_->Take().empty());
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
            EXPECT_EQ(IsChecked(buttons[i]), i == on);
        }
    };
    isOnly(2);
    Click(buttons[0]);
    isOnly(0);
    window_->Do([&] { buttons[1]->SetValue(B_CONTROL_ON); });
    isOnly(1);
    window_->Do([&] { buttons[1]->SetValue(B_CONTROL_OFF); });
    isOnly(3);
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
    const auto enter = [&] { QTest::keyClick(FindWidget<QLineEdit>(text), Qt::Key_Return); };
    type("2.5");
    EXPECT_EQ(text->Text(), "1.0");
    window_->ByHand(enter);
    EXPECT_EQ(text->Text(), "2.5");
    EXPECT_EQ(text->TakePendingText(), std::nullopt);
    EXPECT_EQ(window_->Take().size(), 1u);
    window_->ByHand(enter);
    EXPECT_TRUE(window_->Take().empty()) << "there was no change";

    type("3.5");
    // Without the window's lock, even while somebody else holds it.
    window_->Do([&] {
        std::optional<std::string> taken;
        std::thread([&] { taken = text->TakePendingText(); }).join();
        EXPECT_EQ(taken, "3.5");
        EXPECT_EQ(text->Text(), "2.5");
    });
    window_->ByHand([&] { FindWidget<QLineEdit>(text)->clearFocus(); });
    EXPECT_EQ(text->Text(), "3.5");
    EXPECT_TRUE(window_->Take().empty());

    // Entered, but the window has not heard of it yet.
    type("3.7");
    window_->Do([&] {
        WindowServer::Perform(enter);
        EXPECT_EQ(text->TakePendingText(), "3.7");
        EXPECT_EQ(text->TakePendingText(), std::nullopt);
    });
    EXPECT_EQ(text->Text(), "3.7");

    type("4");
    window_->Do([&] { text->SetText("5"); });
    EXPECT_EQ(text->TakePendingText(), std::nullopt);
    EXPECT_EQ(WindowServer::Ask([&] { return FindWidget<QLineEdit>(text)->text(); }),
              QStringLiteral("5"));
}

}  // namespace
