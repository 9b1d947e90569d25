#include "CanvasView.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QMouseEvent>
#include <QPixmap>
#include <QTest>
#include <QWheelEvent>
#include <filesystem>
#include <thread>

#include "TestWindow.h"

namespace {

constexpr rgb_color kSky{8, 8, 16, 255};
constexpr rgb_color kRed{255, 0, 0, 255};
constexpr rgb_color kGreen{0, 255, 0, 255};

// Notes what its hooks are told.
class Sheet : public CanvasView {
public:
    explicit Sheet(Anchor anchor = Anchor::kLeftTop) : CanvasView("sheet", anchor, kSky) {}

    void MouseDown(const MouseInput& input) override {
        log += input.clicks == 2 ? "D" : "d";
        last = input;
    }
    void MouseUp(const MouseInput& input) override {
        log += "u";
        last = input;
    }
    void MouseMoved(const MouseInput& input, Transit transit) override {
        if (transit == Transit::kInside) log += "m";
        last = input;
    }
    void WheelTurned(const WheelInput& input) override {
        log += "w";
        steps += input.stepsY;
    }
    void KeyDown(const KeyInput& input) override { keys.push_back(input.key); }
    void FrameResized(BRect bounds) override {
        resized++;
        lastBounds = bounds;
    }

    std::string log;
    MouseInput last;
    float steps = 0;
    std::vector<uint32> keys;
    int resized = 0;
    BRect lastBounds;
};

class CanvasViewTest : public testing::Test {
protected:
    void Open(Sheet* sheet) {
        sheet_ = sheet;
        window_->AddChild(sheet);
        window_->Show();
        window_->Settle();
    }

    void TearDown() override { window_->LockAndQuit(); }

    QImage Grab() {
        return WindowServer::Ask([this] { return window_->Widget()->grab().toImage(); });
    }

    void Draw() {
        window_->Lock();
        Canvas& canvas = sheet_->LowerLayer();
        canvas.BeginLineArray(1);
        canvas.AddLine({20, 40}, {120, 40}, kRed);
        canvas.EndLineArray();
        sheet_->SyncLayers();
        sheet_->DrawDisc({70, 40}, 10, kGreen);
        sheet_->Sync();
        window_->Unlock();
        window_->Settle();
    }

    TestWindow* window_ = new TestWindow;
    Sheet* sheet_ = nullptr;
};

TEST_F(CanvasViewTest, ShowsBothLayersAfterSync) {
    Open(new Sheet);
    EXPECT_EQ(sheet_->Bounds(), (BRect{0, 0, 299, 199}));
    EXPECT_EQ(sheet_->resized, 1);
    EXPECT_EQ(Grab().pixelColor(150, 150), QColor(8, 8, 16));
    const int64 shown = sheet_->CountShown();
    // By a thread of its own that holds the window's lock.
    std::thread([this] { Draw(); }).join();
    QImage image = Grab();
    EXPECT_EQ(image.pixelColor(30, 40), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(70, 40), QColor(0, 255, 0));
    EXPECT_GT(sheet_->CountShown(), shown);

    window_->Lock();
    sheet_->CopyFromCanvas({58, 28, 82, 52});
    sheet_->DrawDisc({100, 40}, 10, kGreen);
    window_->Unlock();
    window_->Settle();
    EXPECT_EQ(Grab().pixelColor(70, 40), QColor(0, 255, 0)) << "seen before Sync";
    window_->Lock();
    sheet_->Sync();
    window_->Unlock();
    window_->Settle();
    image = Grab();
    EXPECT_EQ(image.pixelColor(70, 40), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(70, 47), QColor(8, 8, 16));
    EXPECT_EQ(image.pixelColor(100, 40), QColor(0, 255, 0));

    window_->Lock();
    sheet_->Erase();
    sheet_->Sync();
    window_->Unlock();
    window_->Settle();
    EXPECT_EQ(Grab().pixelColor(30, 40), QColor(8, 8, 16));
}

TEST_F(CanvasViewTest, KeepsThePictureWhenResizedAndScrolled) {
    Open(new Sheet(CanvasView::Anchor::kCenter));
    EXPECT_EQ(sheet_->Bounds(), (BRect{-150, -100, 149, 99}));
    Draw();
    EXPECT_EQ(Grab().pixelColor(150 + 30, 100 + 40), QColor(255, 0, 0));
    window_->ResizeTo(499, 399);
    window_->Settle();
    EXPECT_EQ(sheet_->Bounds(), (BRect{-250, -200, 249, 199}));
    EXPECT_EQ(sheet_->lastBounds, sheet_->Bounds());
    EXPECT_EQ(Grab().pixelColor(250 + 30, 200 + 40), QColor(255, 0, 0));
    EXPECT_EQ(Grab().pixelColor(250 + 70, 200 + 40), QColor(0, 255, 0));
    window_->ResizeTo(99, 79);
    window_->Settle();
    window_->ResizeTo(499, 399);
    window_->Settle();
    EXPECT_EQ(Grab().pixelColor(250 + 110, 200 + 40), QColor(255, 0, 0));

    window_->Lock();
    sheet_->ScrollTo({100, 0});
    sheet_->Sync();
    window_->Unlock();
    window_->Settle();
    EXPECT_EQ(Grab().pixelColor(250 + 30 - 100, 200 + 40), QColor(255, 0, 0));
    WindowServer::Perform([this] { window_->Widget()->hide(); });
    WindowServer::Perform([this] { window_->Widget()->show(); });
    EXPECT_EQ(Grab().pixelColor(250 + 30 - 100, 200 + 40), QColor(255, 0, 0));
}

TEST_F(CanvasViewTest, NothingIsDrawnInBetweenWhenTheLooperIsSlow) {
    Open(new Sheet(CanvasView::Anchor::kCenter));
    Draw();
    window_->Lock();  // the layers cannot grow
    WindowServer::Perform([this] { window_->Widget()->resize(500, 400); });
    const QImage image = Grab();
    EXPECT_EQ(image.pixelColor(250 + 30, 200 + 40), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(5, 5), QColor(8, 8, 16));
    window_->Unlock();
}

TEST_F(CanvasViewTest, InputComesInOrderAndMovesAreJoined) {
    Open(new Sheet);
    window_->Lock();
    sheet_->log.clear();
    WindowServer::Perform([this] {
        QWidget* const widget = sheet_->Part()->Widget();
        const auto send = [widget](QEvent::Type type, QPointF at, Qt::MouseButton button,
                                   Qt::MouseButtons buttons) {
            QMouseEvent event(type, at, widget->mapToGlobal(at), button, buttons, Qt::NoModifier);
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
    window_->Unlock();
    window_->Settle();
    window_->Lock();
    EXPECT_EQ(sheet_->log, "dmumwD");
    EXPECT_EQ(sheet_->steps, 5);
    EXPECT_EQ(sheet_->last.where, (BPoint{5, 6}));
    EXPECT_EQ(sheet_->last.buttons, B_PRIMARY_MOUSE_BUTTON);
    EXPECT_EQ(sheet_->keys, (std::vector<uint32>{B_LEFT_ARROW, '+'}));
    window_->Unlock();
}

TEST_F(CanvasViewTest, OverlayLiesOverThePictureAndLeavesNoTrace) {
    Open(new Sheet);
    const QImage before = Grab();
    const auto show = [this](std::vector<OverlayItem> items) {
        window_->Lock();
        sheet_->SetOverlay(std::move(items));
        sheet_->Sync();
        window_->Unlock();
        window_->Settle();
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
    EXPECT_NE(with, before);
    EXPECT_GT(with.pixelColor(60, 199 - 12 - 3).green(), 150);
    EXPECT_EQ(with.copy(0, 0, 300, 40), before.copy(0, 0, 300, 40));
    name.where = {20, 60};
    EXPECT_NE(show({bar, name}), with);
    EXPECT_EQ(show({}), before);
}

TEST(CanvasViewAlone, DrawsWithoutAWindow) {
    CanvasView view("alone", CanvasView::Anchor::kCenter, kSky);
    view.ResizeTo(199, 99, 2.0);
    EXPECT_EQ(view.Bounds(), (BRect{-100, -50, 99, 49}));
    view.LowerLayer().BeginLineArray(1);
    view.LowerLayer().AddLine({-80, 0}, {80, 0}, kRed);
    view.LowerLayer().EndLineArray();
    view.SyncLayers();
    view.DrawDisc({0, 0}, 5, kGreen);
    view.Sync();
    const std::vector<std::byte> bytes = view.EncodePNG();
    const QImage image = QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()),
                                          static_cast<int>(bytes.size()));
    ASSERT_EQ(image.size(), QSize(400, 200));
    EXPECT_EQ(image.pixelColor(201, 101), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(101, 101), QColor(255, 0, 0));
    EXPECT_EQ(image.pixelColor(101, 120), QColor(8, 8, 16));
    view.ResizeTo(199, 99, 1.0);  // another screen: the picture comes along
    EXPECT_EQ(view.UpperLayer().PixelAt({0, 0}), kGreen);
    EXPECT_EQ(view.LowerLayer().PixelAt({0, 0}), kRed);
}

}  // namespace
