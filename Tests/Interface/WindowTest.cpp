#include "BWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <semaphore>
#include <thread>

#include "AppDefs.h"
#include "BButton.h"
#include "BGroupView.h"
#include "BMenuBar.h"
#include "BMenuField.h"
#include "BScreen.h"
#include "BStringView.h"
#include "BTextControl.h"
#include "CanvasView.h"
#include "TestWindow.h"

namespace {

std::ptrdiff_t CountThreads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
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

TEST(Window, ThousandsOpenedAndClosedLeaveNothing) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 500;
    const qsizetype widgets = CountWidgets();
    const std::ptrdiff_t threads = CountThreads();
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
}

TEST(Window, CloseBoxAsksItsLooperAndASlowLooperBlocksNobody) {
    auto* const window = new TestWindow;
    window->Show();
    window->Settle();
    window->Lock();  // the looper can do nothing now
    WindowServer::Perform([window] {
        for (int i = 0; i < 300; i++)
            EXPECT_FALSE(window->Widget()->close());
    });
    EXPECT_TRUE(WindowServer::Ask([] { return true; }));
    window->Unlock();
    while (window->quitRequests < 300)
        window->Settle();
    EXPECT_TRUE(WindowServer::Ask([window] { return window->Widget()->isVisible(); }));
    window->LockAndQuit();
}

// Counts the calls of its hooks.
class HookWindow : public TestWindow {
public:
    void FrameResized(float width, float height) override {
        resized++;
        lastWidth = width;
        lastHeight = height;
    }
    void FrameMoved(BPoint) override { moved++; }

    int resized = 0;
    int moved = 0;
    float lastWidth = 0;
    float lastHeight = 0;
};

TEST(Window, FrameIsKnownAtOnceAndChangesComeAsOneMessage) {
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

    window->Lock();
    window->resized = 0;
    WindowServer::Perform([window] {
        for (int i = 0; i < 200; i++)
            window->Widget()->resize(300 + i, 200 + i);
    });
    window->Unlock();
    window->Settle();
    window->Lock();
    EXPECT_EQ(window->resized, 1);
    EXPECT_EQ(window->lastWidth, 498);
    EXPECT_EQ(window->lastHeight, 398);
    window->Unlock();

    window->SetSizeLimits(199, 299, 99, 149);
    window->ResizeTo(1000, 1000);
    window->Settle();
    EXPECT_EQ(window->Frame().Width(), 299);
    EXPECT_EQ(window->Frame().Height(), 149);
    window->LockAndQuit();
}

TEST(Window, PulsesDoNotPileUp) {
    auto* const window = new TestWindow;
    window->SetPulseRate(2000);
    window->Show();
    window->Settle();
    window->Lock();
    snooze(60000);
    window->Take();
    window->Unlock();
    window->Settle();
    window->Lock();
    const auto pulses = window->Take();
    window->Unlock();
    EXPECT_GE(pulses.size(), 1u);
    EXPECT_LE(pulses.size(), 4u);
    EXPECT_EQ(pulses.front().what, B_PULSE);
    window->SetPulseRate(0);
    window->Settle();
    window->Take();
    snooze(20000);
    window->Settle();
    EXPECT_TRUE(window->Take().empty());
    window->LockAndQuit();
}

TEST(Window, ShortcutsGoToTheirTargets) {
    constexpr uint32 kUndo = FourCC("undo");
    constexpr uint32 kRedo = FourCC("redo");
    constexpr uint32 kFromMenu = FourCC("menu");
    auto* const window = new TestWindow;
    auto* const owner = new TestWindow;
    owner->Show();
    window->AddShortcut('z', 0, new BMessage(kUndo));
    window->AddShortcut('Z', 0, new BMessage(kRedo), owner);
    // The menu has the same shortcut as the window: it alone gets it.
    window->AddShortcut('o', 0, new BMessage(FourCC("wind")));
    auto* const bar = new BMenuBar("bar");
    auto* const menu = new BMenu("menu");
    menu->AddItem(new BMenuItem("Open", new BMessage(kFromMenu), 'O'));
    bar->AddItem(menu);
    window->AddChild(bar);
    window->Show();
    window->Activate();
    window->Settle();
    WindowServer::Perform([window] {
        ASSERT_TRUE(QTest::qWaitForWindowActive(window->Widget()));
        QTest::keyClick(window->Widget(), Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(window->Widget(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QTest::keyClick(window->Widget(), Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(window->Widget(), Qt::Key_W, Qt::ControlModifier);
    });
    window->Settle();
    owner->Settle();
    const auto mine = window->Take();
    ASSERT_EQ(mine.size(), 2u);
    EXPECT_EQ(mine[0].what, kUndo);
    EXPECT_EQ(mine[1].what, kFromMenu);
    const auto others = owner->Take();
    ASSERT_EQ(others.size(), 1u);
    EXPECT_EQ(others[0].what, kRedo);
    EXPECT_EQ(window->quitRequests, 1);

    window->RemoveShortcut('z', 0);
    window->Settle();
    WindowServer::Perform(
        [window] { QTest::keyClick(window->Widget(), Qt::Key_Z, Qt::ControlModifier); });
    window->Settle();
    EXPECT_TRUE(window->Take().empty());
    window->LockAndQuit();
    owner->LockAndQuit();
}

TEST(Window, EnterAndEscapePressTheirButtonsAfterTheTextIsEntered) {
    auto* const window = new TestWindow;
    auto* const group = new BGroupView("group", B_VERTICAL);
    auto* const text = new BTextControl("text", "Name:", "old", new BMessage(FourCC("text")));
    auto* const use = new BButton("use", "Use", new BMessage(FourCC("use ")));
    auto* const cancel = new BButton("cancel", "Cancel", new BMessage(FourCC("cncl")));
    group->AddChild(text);
    group->AddChild(use);
    group->AddChild(cancel);
    window->AddChild(group);
    window->SetDefaultButton(use);
    window->SetCancelButton(cancel);
    window->Show();
    window->Settle();
    WindowServer::Perform([text] {
        auto* const line = FindWidget<QLineEdit>(text);
        line->selectAll();
        QTest::keyClicks(line, "new");
        QTest::keyClick(line, Qt::Key_Return);
        QTest::keyClick(line, Qt::Key_Escape);
    });
    // Who has gone to another button means that one.
    cancel->MakeFocus();
    WindowServer::Perform(
        [cancel] { QTest::keyClick(FindWidget<QPushButton>(cancel), Qt::Key_Return); });
    window->Settle();
    const auto messages = window->Take();
    ASSERT_EQ(messages.size(), 4u);
    EXPECT_EQ(messages[0].what, FourCC("text"));
    EXPECT_EQ(messages[1].what, FourCC("use "));
    EXPECT_EQ(messages[2].what, FourCC("cncl"));
    EXPECT_EQ(messages[3].what, FourCC("cncl"));
    window->LockAndQuit();
}

TEST(Window, TheKeyboardComesBackToWhatWasDisabledMeanwhile) {
    auto* const window = new TestWindow;
    auto* const group = new BGroupView("group", B_VERTICAL);
    auto* const first = new BTextControl("first", "First:", "", nullptr);
    auto* const second = new BTextControl("second", "Second:", "", nullptr);
    auto* const button = new BButton("button", "Button", new BMessage(FourCC("btn ")));
    for (BView* const view :
         {static_cast<BView*>(button), static_cast<BView*>(first), static_cast<BView*>(second)})
        group->AddChild(view);
    window->AddChild(group);
    window->Show();
    const auto hasFocus = [window](QWidget* widget) {
        return WindowServer::Ask([&] { return window->Widget()->focusWidget() == widget; });
    };
    const auto enable = [&](bool isEnabled) {
        first->SetEnabled(isEnabled);
        second->SetEnabled(isEnabled);
    };
    auto* const line = WindowServer::Ask([second] { return FindWidget<QLineEdit>(second); });
    second->MakeFocus();
    enable(false);
    // Meanwhile nobody has it.
    EXPECT_TRUE(hasFocus(window->Widget()));
    enable(true);
    EXPECT_TRUE(hasFocus(line));
    enable(false);
    button->MakeFocus();
    enable(true);
    EXPECT_FALSE(hasFocus(line));
    EXPECT_FALSE(hasFocus(window->Widget()));
    window->LockAndQuit();
}

TEST(Window, ViewsAreFoundMovedAndTakenOut) {
    auto* const window = new TestWindow;
    auto* const group = new BGroupView("group", B_HORIZONTAL);
    auto* const button = new BButton("button", "button", new BMessage(FourCC("btn ")));
    group->AddChild(button);
    window->AddChild(group);
    window->Show();
    window->Settle();
    window->Lock();
    EXPECT_EQ(window->FindView("button"), button);
    EXPECT_EQ(button->Window(), window);
    EXPECT_EQ(button->Looper(), window);
    EXPECT_TRUE(button->RemoveSelf());
    EXPECT_EQ(button->Looper(), nullptr);
    EXPECT_EQ(window->FindView("button"), nullptr);
    window->AddChild(button);
    window->Unlock();
    window->Settle();
    EXPECT_TRUE(WindowServer::Ask([&] {
        QCoreApplication::sendPostedEvents();  // the toolkit shows what is added in a later turn
        return button->Part()->Widget()->isVisible();
    }));
    WindowServer::Perform([&] { FindWidget<QAbstractButton>(button)->click(); });
    window->Settle();
    EXPECT_EQ(window->Take().size(), 1u);
    window->LockAndQuit();
    EXPECT_TRUE(BScreen().IsValid());
    EXPECT_GT(BScreen().Frame().Width(), 100);
}

}  // namespace
