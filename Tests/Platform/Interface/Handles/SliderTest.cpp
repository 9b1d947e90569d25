// Controls whose value is moved under the hand: sliders, and the colour that a dialog tries out.
#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include "Platform/Interface/Handles/BColorControl.h"
#include "Platform/Interface/Handles/BSlider.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

constexpr uint32 kMoving = FourCC("mvng");
constexpr uint32 kMoved = FourCC("mvd ");

class SliderTest : public WindowFixture {
protected:
    // What the window was told since the last call: m for a value under the hand, F for one that
    // stays, each with the value.
    std::string Told() {
        std::string told;
        for (const BMessage& message : window_->Take()) {
            int32 value = -1;
            EXPECT_EQ(message.FindInt32(kValueField, &value), B_OK);
            told += (message.what == kMoving ? "m" : "F") + std::to_string(value) + ' ';
        }
        return told;
    }
    BSlider* ShowSlider() {
        auto* const slider = new BSlider("slider", "Size", new BMessage(kMoved), 2, 40);
        slider->SetModificationMessage(new BMessage(kMoving));
        slider->SetSteps(1, 10);
        Show(slider);
        return slider;
    }
    void Use(const BSlider* slider, const std::function<void(QSlider*)>& use) {
        window_->ByHand([&] { use(FindWidget<QSlider>(slider)); });
    }
};

TEST_F(SliderTest, AKeyThatIsHeldAndADragAreOneMovementEach) {
    BSlider* const slider = ShowSlider();
    Use(slider, [](QSlider* knob) {
        knob->setFocus();
        for (int i = 0; i < 3; i++)
            QTest::keyPress(knob, Qt::Key_Right);
    });
    EXPECT_EQ(Told(), "m3 m4 m5 ");
    EXPECT_EQ(slider->Value(), 5);
    Use(slider, [](QSlider* knob) { QTest::keyRelease(knob, Qt::Key_Right); });
    EXPECT_EQ(Told(), "m5 F5 ");
    Use(slider, [](QSlider* knob) { QTest::keyClick(knob, Qt::Key_PageUp); });
    EXPECT_EQ(Told(), "m15 m15 F15 ");
    // The keyboard goes away while the key is down.
    Use(slider, [](QSlider* knob) {
        QTest::keyPress(knob, Qt::Key_Left);
        knob->clearFocus();
    });
    EXPECT_EQ(Told(), "m14 m14 F14 ");

    Use(slider, [](QSlider* knob) {
        knob->setSliderDown(true);
        knob->setSliderPosition(20);
        knob->setSliderPosition(30);
    });
    EXPECT_EQ(Told(), "m20 m30 ");
    Use(slider, [](QSlider* knob) { knob->setSliderDown(false); });
    EXPECT_EQ(Told(), "m30 F30 ");
}

TEST_F(SliderTest, OnlyTheHandOnTheKnobMovesAValueAndIsToldOf) {
    BSlider* const slider = ShowSlider();
    window_->Do([&] { slider->SetValue(1000); });
    EXPECT_EQ(slider->Value(), 40);
    EXPECT_EQ(Told(), "") << "nobody has used it";
    // A knob that was only touched, a key that is none of a slider's, and the wheel.
    Use(slider, [](QSlider* knob) {
        knob->setFocus();
        knob->setSliderDown(true);
        knob->setSliderDown(false);
        QTest::keyClick(knob, Qt::Key_X);
        QWheelEvent wheel(knob->rect().center(), knob->mapToGlobal(knob->rect().center()), {},
                          {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(knob, &wheel);
        EXPECT_FALSE(wheel.isAccepted()) << "it is for the window around";
    });
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(slider->Value(), 40);
    // It was disabled after the user had moved it: nothing is done, but what is shown is known.
    window_->Do([&] {
        WindowServer::Perform([&] { FindWidget<QSlider>(slider)->setValue(7); });
        slider->SetEnabled(false);
    });
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(slider->Value(), 7);
}

TEST_F(SliderTest, AColourIsTriedOutAndTakenOrTakenBack) {
    auto* const control = new BColorControl("color", "Trail", new BMessage(kMoved));
    control->SetModificationMessage(new BMessage(kMoving));
    control->SetValue(rgb_color{1, 2, 3, 255});
    Show(control);
    const auto open = [&] { window_->ByHand([&] { FindWidget<QPushButton>(control)->click(); }); };
    const auto withDialog = [&](const std::function<void(QColorDialog*)>& use) {
        window_->ByHand([&] {
            auto* const dialog = window_->Widget()->findChild<QColorDialog*>();
            ASSERT_NE(dialog, nullptr);
            use(dialog);
        });
    };
    const auto look = [&](const char* color) {
        withDialog([&](QColorDialog* dialog) { dialog->setCurrentColor(QColor(color)); });
    };
    // The toolkit deletes a dialog some time after it has been closed.
    const auto close = [&](bool isTaken) {
        withDialog([&](QColorDialog* dialog) { isTaken ? dialog->accept() : dialog->reject(); });
        window_->ByHand([&] {
            EXPECT_TRUE(QTest::qWaitFor(
                [&] { return window_->Widget()->findChild<QColorDialog*>() == nullptr; }));
        });
    };
    open();
    look("#000100");
    EXPECT_EQ(Told(), "m256 ");
    EXPECT_EQ(control->ValueAsColor(), (rgb_color{0, 1, 0, 255}));
    look("#000200");
    close(true);
    EXPECT_EQ(Told(), "m512 F512 ");
    // What it was when the dialog was opened, and not when the control was made.
    open();
    look("#ffffff");
    close(false);
    EXPECT_EQ(Told(), "m16777215 F512 ");
    EXPECT_EQ(control->ValueAsColor(), (rgb_color{0, 2, 0, 255}));
    // The dialog goes with its window, and what was tried out goes with it.
    open();
    look("#ffffff");
    window_->Do([&] { window_->Hide(); });
    EXPECT_EQ(Told(), "m16777215 F512 ");
}

}  // namespace
