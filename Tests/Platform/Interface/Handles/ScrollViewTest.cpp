// Bars over the edges of a view that has no size of its own.
#include "Platform/Interface/Handles/BScrollView.h"

#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <limits>

#include "Tests/Platform/Interface/TestWindow.h"

namespace {

constexpr const char* kAcross = "Left and right";
constexpr const char* kUpright = "Up and down";
constexpr ScrollRange kAllShown{0.0, 100.0, 0.0, 200.0};

class ScrollViewTest : public WindowFixture {
protected:
    void SetUp() override {
        view_ = new BScrollView("scroll", new BView("content"));
        view_->SetScroller([this](float right, float down) {
            right_ += right;
            down_ += down;
        });
        view_->SetBarNames(kAcross, kUpright);
        Show(view_);
    }
    void SetRanges(const ScrollRange& horizontal, const ScrollRange& vertical) {
        window_->Do([&] { view_->SetRanges(horizontal, vertical); });
    }
    // On the server's thread.
    QScrollBar* Bar(const char* name) const {
        for (QScrollBar* const bar : window_->Widget()->findChildren<QScrollBar*>())
            if (bar->accessibleName() == name) return bar;
        return nullptr;
    }
    [[nodiscard]] std::string Shown() const {
        return WindowServer::Ask([this] {
            std::string shown;
            for (const char* const name : {kAcross, kUpright})
                if (Bar(name)->isVisible()) shown += name;
            return shown;
        });
    }
    void Use(const char* name, const std::function<void(QScrollBar*)>& use) {
        window_->ByHand([&] { use(Bar(name)); });
    }
    // What the scroller was told since the last call.
    float TakeRight() { return std::exchange(right_, 0.0f); }
    float TakeDown() { return std::exchange(down_, 0.0f); }

private:
    BScrollView* view_ = nullptr;
    float right_ = 0.0f;
    float down_ = 0.0f;
};

// With the mouse on the knob, by some pixels of the bar.
void Drag(QScrollBar* bar, int pixels) {
    const bool isAcross = bar->orientation() == Qt::Horizontal;
    const int length = isAcross ? bar->width() : bar->height();
    const double all = bar->maximum() + bar->pageStep();
    constexpr int kHalfKnob = 10;  // of the shortest
    const double share = (bar->value() + bar->pageStep() / 2.0) / all;
    const int middle = std::clamp(static_cast<int>(share * length), kHalfKnob, length - kHalfKnob);
    const auto at = [&](int along) { return isAcross ? QPoint(along, 4) : QPoint(4, along); };
    QTest::mousePress(bar, Qt::LeftButton, {}, at(middle));
    QTest::mouseMove(bar, at(middle + pixels / 2));
    QTest::mouseMove(bar, at(middle + pixels));
}

void LetGo(QScrollBar* bar) {
    QTest::mouseRelease(bar, Qt::LeftButton);
}

}  // namespace

TEST_F(ScrollViewTest, BarsAreThereWhereSomethingLiesBeyondAnEdge) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    SetRanges(kAllShown, kAllShown);
    EXPECT_EQ(Shown(), "");
    SetRanges({-500.0, 100.0, 0.0, 200.0}, kAllShown);
    EXPECT_EQ(Shown(), kAcross);
    SetRanges({-0.5, 200.5, 0.0, 200.0}, {0.0, 900.0, 0.0, 200.0});
    EXPECT_EQ(Shown(), kUpright);
    SetRanges({kNaN, kNaN, 0.0, 200.0}, {0.0, 1e308, -1e308, 200.0});
    EXPECT_EQ(Shown(), "");
    EXPECT_EQ(TakeRight(), 0.0f) << "nobody has moved a bar";
    EXPECT_EQ(TakeDown(), 0.0f);

    // They stay at the edges of a window that grows.
    SetRanges({-500.0, 500.0, 0.0, 200.0}, {-500.0, 500.0, 0.0, 200.0});
    window_->Do([this] { window_->ResizeTo(500, 400); });
    Use(kUpright, [](QScrollBar* bar) {
        const QWidget* const area = bar->parentWidget();
        EXPECT_GT(area->width(), 400);
        EXPECT_EQ(bar->geometry().right(), area->width() - 1);
    });
    Use(kAcross, [](QScrollBar* bar) {
        EXPECT_EQ(bar->geometry().bottom(), bar->parentWidget()->height() - 1);
    });
}

TEST_F(ScrollViewTest, AKnobThatIsHeldStaysUnderTheHandWhateverIsShown) {
    SetRanges({-1000.0, 1000.0, 0.0, 300.0}, kAllShown);
    int before = 0;
    Use(kAcross, [&](QScrollBar* bar) {
        before = bar->value();
        EXPECT_EQ(before, 1000);
        Drag(bar, 20);
    });
    int after = 0;
    Use(kAcross, [&](QScrollBar* bar) { after = bar->value(); });
    EXPECT_GT(after, before);
    EXPECT_EQ(TakeRight(), static_cast<float>(after - before));
    // The picture has moved, and all of it is in view: but the hand has the knob.
    SetRanges(kAllShown, kAllShown);
    EXPECT_EQ(Shown(), kAcross);
    Use(kAcross, [&](QScrollBar* bar) { EXPECT_EQ(bar->value(), after); });
    Use(kAcross, LetGo);
    EXPECT_EQ(Shown(), "");
    EXPECT_EQ(TakeRight(), 0.0f);
}

// A bar counts in whole numbers, of which there are not so many.
TEST_F(ScrollViewTest, WhatIsVeryLargeIsScrolledInLargerSteps) {
    constexpr double kFar = 1e12;
    SetRanges(kAllShown, {0.0, kFar, 0.0, 200.0});
    Use(kUpright, [](QScrollBar* bar) { Drag(bar, bar->height()); });
    Use(kUpright, LetGo);
    EXPECT_NEAR(TakeDown(), kFar, 1e-3 * kFar);
    SetRanges(kAllShown, {0.0, kFar, kFar - 200.0, kFar});
    Use(kUpright, [](QScrollBar* bar) {
        EXPECT_EQ(bar->value(), bar->maximum());
        Drag(bar, -bar->height());
    });
    Use(kUpright, LetGo);
    EXPECT_NEAR(TakeDown(), -kFar, 1e-3 * kFar);
}
