#include "Platform/Interface/Canvas/CanvasView.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QMouseEvent>
#include <QPixmap>
#include <QTest>
#include <QWheelEvent>
#include <thread>

#include "Tests/Platform/Interface/TestWindow.h"

namespace {

constexpr rgb_color kSky{8, 8, 16, 255};
constexpr rgb_color kRed{255, 0, 0, 255};
constexpr rgb_color kGreen{0, 255, 0, 255};

// Notes what its hooks are told.
class Sheet : public CanvasView {
public:
    explicit Sheet(Anchor anchor) : CanvasView("sheet", anchor, kSky) {}

    void MouseDown(const MouseInput& input) override {
        log += input.clicks == 2 ? "D" : "d";
        last = input;
    }
    void MouseUp(const MouseInput& /*input*/) override { log += "u"; }
    void MouseMoved(const MouseInput& /*input*/, Transit transit) override {
        if (transit == Transit::kInside) log += "m";
    }
    void WheelTurned(const WheelInput& input) override {
        log += "w";
        steps += input.stepsY;
    }
    void KeyDown(const KeyInput& input) override {
        log += input.key == B_LEFT_ARROW ? '<' : static_cast<char>(input.key);
    }
    void FrameResized(BRect bounds) override { lastBounds = bounds; }

    std::string log;
    MouseInput last;
    float steps = 0;
    BRect lastBounds;
};

class CanvasViewTest : public WindowFixture {
protected:
    // With a red line, and a green disc on it.
    void Open(CanvasView::Anchor anchor) {
        sheet_ = new Sheet(anchor);
        Show(sheet_);
        // By a thread of its own that holds the window's lock.
        std::thread([this] {
            window_->Do([this] {
                Canvas& canvas = sheet_->LowerLayer();
                canvas.BeginLineArray(1);
                canvas.AddLine({20, 40}, {120, 40}, kRed);
                canvas.EndLineArray();
                sheet_->SyncLayers();
                sheet_->DrawDisc({70, 40}, 10, kGreen);
                sheet_->Sync();
            });
        }).join();
    }

    QImage Grab() {
        return WindowServer::Ask([this] { return window_->Widget()->grab().toImage(); });
    }
    rgb_color SeenAt(int x, int y) {
        const QColor color = Grab().pixelColor(x, y);
        return {static_cast<uint8>(color.red()), static_cast<uint8>(color.green()),
                static_cast<uint8>(color.blue()), 255};
    }

    Sheet* sheet_ = nullptr;
};

TEST_F(CanvasViewTest, ShowsBothLayersAfterSync) {
    Open(CanvasView::Anchor::kLeftTop);
    EXPECT_EQ(sheet_->Bounds(), (BRect{0, 0, 299, 199}));
    EXPECT_EQ(SeenAt(150, 150), kSky);
    EXPECT_EQ(SeenAt(30, 40), kRed);
    EXPECT_EQ(SeenAt(70, 40), kGreen);
    window_->Do([this] {
        sheet_->CopyFromCanvas({58, 28, 82, 52});
        sheet_->DrawDisc({100, 40}, 10, kGreen);
    });
    EXPECT_EQ(SeenAt(70, 40), kGreen) << "seen before Sync";
    window_->Do([this] { sheet_->Sync(); });
    EXPECT_EQ(SeenAt(70, 40), kRed);
    EXPECT_EQ(SeenAt(70, 47), kSky);
    EXPECT_EQ(SeenAt(100, 40), kGreen);
    window_->Do([this] {
        sheet_->Erase();
        sheet_->Sync();
    });
    EXPECT_EQ(SeenAt(30, 40), kSky);
}

TEST_F(CanvasViewTest, KeepsThePictureWhenResizedAndScrolled) {
    Open(CanvasView::Anchor::kCenter);
    EXPECT_EQ(sheet_->Bounds(), (BRect{-150, -100, 149, 99}));
    EXPECT_EQ(SeenAt(150 + 30, 100 + 40), kRed);
    const auto resize = [this](float width, float height) {
        window_->ResizeTo(width - 1, height - 1);
        window_->Settle();
    };
    resize(500, 400);
    EXPECT_EQ(sheet_->Bounds(), (BRect{-250, -200, 249, 199}));
    EXPECT_EQ(sheet_->lastBounds, sheet_->Bounds());
    EXPECT_EQ(SeenAt(250 + 30, 200 + 40), kRed);
    EXPECT_EQ(SeenAt(250 + 70, 200 + 40), kGreen);
    resize(100, 80);
    resize(500, 400);
    EXPECT_EQ(SeenAt(250 + 110, 200 + 40), kRed);

    window_->Do([this] {
        sheet_->ScrollTo({100, 0});
        sheet_->Sync();
    });
    EXPECT_EQ(SeenAt(250 + 30 - 100, 200 + 40), kRed);
    WindowServer::Perform([this] { window_->Widget()->hide(); });
    WindowServer::Perform([this] { window_->Widget()->show(); });
    EXPECT_EQ(SeenAt(250 + 30 - 100, 200 + 40), kRed);
}

TEST_F(CanvasViewTest, NothingIsDrawnInBetweenWhenTheLooperIsSlow) {
    Open(CanvasView::Anchor::kCenter);
    window_->Lock();  // the layers cannot grow
    WindowServer::Perform([this] { window_->Widget()->resize(500, 400); });
    EXPECT_EQ(SeenAt(250 + 30, 200 + 40), kRed);
    EXPECT_EQ(SeenAt(5, 5), kSky);
    window_->Unlock();
}

TEST_F(CanvasViewTest, InputComesInOrderAndMovesAreJoined) {
    Open(CanvasView::Anchor::kLeftTop);
    window_->Do([this] {
        sheet_->log.clear();
        WindowServer::Perform([this] {
            QWidget* const widget = sheet_->Part()->Widget();
            const auto send = [widget](QEvent::Type type, QPointF at, Qt::MouseButton button,
                                       Qt::MouseButtons buttons) {
                QMouseEvent event(type, at, widget->mapToGlobal(at), button, buttons,
                                  Qt::NoModifier);
                QCoreApplication::sendEvent(widget, &event);
            };
            send(QEvent::MouseButtonPress, {10.5, 20.5}, Qt::LeftButton, Qt::LeftButton);
            for (int i = 0; i < 500; i++)
                send(QEvent::MouseMove, {10.5 + i * 0.2, 30.5}, Qt::NoButton, Qt::LeftButton);
            send(QEvent::MouseButtonRelease, {120.5, 30.5}, Qt::LeftButton, Qt::NoButton);
            for (int i = 0; i < 100; i++)
                send(QEvent::MouseMove, {50.5, 60.5}, Qt::NoButton, Qt::NoButton);
            for (int i = 0; i < 10; i++) {
                QWheelEvent event({50, 60}, {50, 60}, {}, {0, 60}, Qt::NoButton, Qt::NoModifier,
                                  Qt::NoScrollPhase, false);
                QCoreApplication::sendEvent(widget, &event);
            }
            send(QEvent::MouseButtonDblClick, {5.5, 6.5}, Qt::LeftButton, Qt::LeftButton);
            QTest::keyClick(widget, Qt::Key_Left);
            QTest::keyClick(widget, Qt::Key_Plus);
        });
        EXPECT_EQ(sheet_->log, "");
    });
    EXPECT_EQ(sheet_->log, "dmumwD<+");
    EXPECT_EQ(sheet_->steps, 5);
    EXPECT_EQ(sheet_->last.where, (BPoint{5, 6}));
    EXPECT_EQ(sheet_->last.inView, (BPoint{5.5f, 6.5f}));
    EXPECT_EQ(sheet_->last.buttons, B_PRIMARY_MOUSE_BUTTON);
}

TEST_F(CanvasViewTest, OverlayLiesOverThePictureAndLeavesNoTrace) {
    Open(CanvasView::Anchor::kLeftTop);
    const QImage before = Grab();
    const auto show = [this](const std::vector<OverlayItem>& items) {
        window_->Do([&] {
            sheet_->SetOverlay(items);
            sheet_->Sync();
        });
        return Grab();
    };
    OverlayItem bar;
    bar.kind = OverlayItem::Kind::kBar;
    bar.anchor = OverlayItem::Anchor::kLeftBottom;
    bar.where = {12, 12};
    bar.length = 100;
    bar.text = "1 AU";
    OverlayItem name;
    name.anchor = OverlayItem::Anchor::kCanvas;
    name.where = {150, 80};
    name.text = "Arrakis";
    const QImage with = show({bar, name});
    EXPECT_GT(with.pixelColor(60, 199 - 12 - 3).green(), 150);
    EXPECT_EQ(with.copy(0, 0, 300, 40), before.copy(0, 0, 300, 40));
    name.where = {20, 60};
    EXPECT_NE(show({bar, name}), with);
    EXPECT_EQ(show({}), before);
}

}  // namespace
