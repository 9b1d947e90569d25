#include "Platform/Interface/Handles/BWindow.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <semaphore>
#include <thread>

#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Canvas/CanvasView.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Interface/Handles/BMenuField.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/BTextControl.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

std::ptrdiff_t CountThreads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
}

std::size_t HeapInUse() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// Widgets that are deleted later are gone after one more turn of the event loop.
qsizetype CountWidgets() {
    WindowServer::Perform(
        [] { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); });
    return WindowServer::Ask([] { return QApplication::allWidgets().size(); });
}

void Fill(BWindow* window) {
    auto* const bar = new BMenuBar("bar");
    auto* const menu = new BMenu("menu");
    menu->AddItem(new BMenuItem("item", new BMessage(FourCC("item")), 'I'));
    bar->AddItem(menu);
    window->AddChild(bar);
    auto* const group = new BGroupView("group", B_VERTICAL);
    group->AddChild(new BStringView("text", "text"));
    group->AddChild(new BButton("button", "button", new BMessage(FourCC("btn "))));
    auto* const choices = new BPopUpMenu("choices");
    choices->AddItem(new BMenuItem("one", new BMessage(FourCC("one "))));
    group->AddChild(new BMenuField("field", "field", choices));
    group->AddChild(new CanvasView("canvas", CanvasView::Anchor::kCenter, {}));
    window->AddChild(group);
}

using WindowTest = WindowFixture;

TEST(Windows, ThousandsOpenedAndClosedLeaveNothing) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 500;
    constexpr std::size_t kKept = 16'000'000;  // by the toolkit, for the next time
    const qsizetype widgets = CountWidgets();
    const std::ptrdiff_t threads = CountThreads();
    const std::size_t heap = HeapInUse();
    std::vector<std::thread> users;
    for (int t = 0; t < kThreads; t++)
        users.emplace_back([t] {
            for (int i = 0; i < kRounds; i++) {
                auto* const window = new TestWindow;
                Fill(window);
                if (i % 10 == t) {
                    window->Quit();  // never run
                    continue;
                }
                window->Show();
                if (i % 3 == 0) window->Settle();
                window->LockAndQuit();
            }
        });
    for (std::thread& user : users)
        user.join();
    EXPECT_EQ(CountWidgets(), widgets);
    // The system needs a moment to take the last ones off its list.
    for (int i = 0; i < 100 && CountThreads() > threads; i++)
        snooze(10000);
    EXPECT_LE(CountThreads(), threads);
    // The pictures of the windows alone would be hundreds of megabytes.
    EXPECT_LT(HeapInUse(), heap + kKept);
}

TEST_F(WindowTest, CloseBoxAsksItsLooperAndASlowLooperBlocksNobody) {
    window_->Show();
    window_->Settle();
    window_->Lock();  // the looper can do nothing now
    WindowServer::Perform([this] {
        for (int i = 0; i < 300; i++)
            EXPECT_FALSE(window_->Widget()->close());
    });
    EXPECT_TRUE(WindowServer::Ask([] { return true; }));
    window_->Unlock();
    while (window_->quitRequests < 300)
        window_->Settle();
    EXPECT_TRUE(WindowServer::Ask([this] { return window_->Widget()->isVisible(); }));
}

// Notes the calls of its hook.
class HookWindow : public TestWindow {
public:
    void FrameResized(float width, float height) override { resizes.push_back({width, height}); }

    std::vector<BPoint> resizes;
};

TEST(Windows, FrameIsKnownAtOnceAndChangesComeAsOneMessage) {
    auto* const window = new HookWindow;
    EXPECT_EQ(window->Frame(), (BRect{100, 100, 399, 299}));
    window->Show();
    window->Settle();
    EXPECT_EQ(WindowServer::Ask([window] { return window->Widget()->size(); }), QSize(300, 200));
    window->ResizeTo(500, 250);
    window->MoveTo({40, 50});
    EXPECT_EQ(window->Frame(), (BRect{40, 50, 540, 300}));
    window->Settle();
    EXPECT_EQ(WindowServer::Ask([window] { return window->Widget()->geometry(); }),
              QRect(40, 50, 501, 251));

    window->Do([window] {
        window->resizes.clear();
        WindowServer::Perform([window] {
            for (int i = 0; i < 200; i++)
                window->Widget()->resize(300 + i, 200 + i);
        });
    });
    EXPECT_EQ(window->resizes, (std::vector<BPoint>{{498, 398}}));

    window->SetSizeLimits(199, 299, 99, 149);
    window->ResizeTo(1000, 1000);
    window->Settle();
    EXPECT_EQ(window->Frame().Width(), 299);
    EXPECT_EQ(window->Frame().Height(), 149);
    window->LockAndQuit();
}

TEST_F(WindowTest, PulsesDoNotPileUp) {
    window_->SetPulseRate(2000);
    window_->Show();
    window_->Settle();
    window_->Do([this] {
        snooze(60000);
        window_->Take();
    });
    const auto pulses = window_->Take();
    EXPECT_GE(pulses.size(), 1u);
    EXPECT_LE(pulses.size(), 4u);
    EXPECT_EQ(pulses.front().what, B_PULSE);
    window_->SetPulseRate(0);
    window_->Settle();
    window_->Take();
    snooze(20000);
    window_->Settle();
    EXPECT_TRUE(window_->Take().empty());
}

TEST_F(WindowTest, ShortcutsGoToTheirTargets) {
    constexpr uint32 kUndo = FourCC("undo");
    constexpr uint32 kRedo = FourCC("redo");
    constexpr uint32 kFromMenu = FourCC("menu");
    auto* const owner = new TestWindow;
    owner->Show();
    window_->AddShortcut('z', 0, new BMessage(kUndo));
    window_->AddShortcut('Z', 0, new BMessage(kRedo), owner);
    // The menu has the same shortcut as the window: it alone gets it.
    window_->AddShortcut('o', 0, new BMessage(FourCC("wind")));
    auto* const bar = new BMenuBar("bar");
    auto* const menu = new BMenu("menu");
    menu->AddItem(new BMenuItem("Open", new BMessage(kFromMenu), 'O'));
    bar->AddItem(menu);
    Show(bar);
    window_->ByHand([this] {
        QTest::keyClick(window_->Widget(), Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(window_->Widget(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClick(window_->Widget(), Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(window_->Widget(), Qt::Key_W, Qt::ControlModifier);
    });
    owner->Settle();
    const auto mine = window_->Take();
    ASSERT_EQ(mine.size(), 2u);
    EXPECT_EQ(mine[0].what, kUndo);
    EXPECT_EQ(mine[1].what, kFromMenu);
    EXPECT_EQ(owner->TakeOne().what, kRedo);
    EXPECT_EQ(window_->quitRequests, 1);

    window_->RemoveShortcut('z', 0);
    window_->Settle();
    window_->ByHand([this] { QTest::keyClick(window_->Widget(), Qt::Key_Z, Qt::ControlModifier); });
    EXPECT_TRUE(window_->Take().empty());
    owner->LockAndQuit();
}

TEST_F(WindowTest, EnterAndEscapePressTheirButtonsAfterTheTextIsEntered) {
    auto* const group = new BGroupView("group", B_VERTICAL);
    auto* const text = new BTextControl("text", "Name:", "old", new BMessage(FourCC("text")));
    auto* const use = new BButton("use", "Use", new BMessage(FourCC("use ")));
    auto* const cancel = new BButton("cancel", "Cancel", new BMessage(FourCC("cncl")));
    group->AddChild(text);
    group->AddChild(use);
    group->AddChild(cancel);
    window_->SetDefaultButton(use);
    window_->SetCancelButton(cancel);
    Show(group);
    WindowServer::Perform([text] {
        auto* const line = FindWidget<QLineEdit>(text);
        line->selectAll();
        QTest::keyClicks(line, "new");
        QTest::keyClick(line, Qt::Key_Return);
        QTest::keyClick(line, Qt::Key_Escape);
    });
    // A user who has gone to another button means that one.
    cancel->MakeFocus();
    window_->ByHand([cancel] { QTest::keyClick(FindWidget<QPushButton>(cancel), Qt::Key_Return); });
    std::vector<uint32> codes;
    for (const BMessage& message : window_->Take())
        codes.push_back(message.what);
    EXPECT_EQ(codes, (std::vector{FourCC("text"), FourCC("use "), FourCC("cncl"), FourCC("cncl")}));
}

TEST_F(WindowTest, TheKeyboardComesBackToWhatWasDisabledMeanwhile) {
    auto* const group = new BGroupView("group", B_VERTICAL);
    auto* const first = new BTextControl("first", "First:", "", nullptr);
    auto* const second = new BTextControl("second", "Second:", "", nullptr);
    auto* const button = new BButton("button", "Button", new BMessage(FourCC("btn ")));
    for (BView* const view : std::initializer_list<BView*>{button, first, second})
        group->AddChild(view);
    Show(group);
    const auto hasFocus = [this](QWidget* widget) {
        return WindowServer::Ask([&] { return window_->Widget()->focusWidget() == widget; });
    };
    const auto enable = [&](bool isEnabled) {
        first->SetEnabled(isEnabled);
        second->SetEnabled(isEnabled);
    };
    auto* const line = WindowServer::Ask([second] { return FindWidget<QLineEdit>(second); });
    second->MakeFocus();
    enable(false);
    // Meanwhile nobody has it.
    EXPECT_TRUE(hasFocus(window_->Widget()));
    enable(true);
    EXPECT_TRUE(hasFocus(line));
    enable(false);
    button->MakeFocus();
    enable(true);
    EXPECT_FALSE(hasFocus(line));
    EXPECT_FALSE(hasFocus(window_->Widget()));
}

}  // namespace
