// A window that keeps the messages that come to it, and what tests need to use it like a user.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>
#include <mutex>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BView.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/ViewPart.h"
#include "Platform/Interface/Server/WindowPart.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Tests/Platform/Interface/Settle.h"

class TestWindow : public BWindow {
public:
    TestWindow() : BWindow({100, 100, 399, 299}, "test", B_TITLED_WINDOW) {}

    void MessageReceived(BMessage* message) override {
        if (message->what != FourCC("ping")) {
            const std::lock_guard lock(mutex_);
            received_.push_back(*message);
        }
        BWindow::MessageReceived(message);
    }

    void DispatchMessage(BMessage* message, BHandler* handler) override {
        if (message->what != FourCC("ping")) dispatched++;
        BWindow::DispatchMessage(message, handler);
    }

    bool QuitRequested() override {
        quitRequests++;
        return false;
    }

    // What came since the last call.
    std::vector<BMessage> Take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(received_, {});
    }
    // The only message that came.
    BMessage TakeOne() {
        const std::vector<BMessage> taken = Take();
        EXPECT_EQ(taken.size(), 1u);
        return taken.empty() ? BMessage() : taken.front();
    }

    void Settle() { ::Settle(this); }
    // As a thread of the program does it, with the window's lock.
    template <typename Change>
    void Do(Change change) {
        Lock();
        change();
        Unlock();
        Settle();
    }
    // As a user does it, to the widgets.
    template <typename Use>
    void ByHand(Use use) {
        WindowServer::Perform(use);
        Settle();
    }

    void LockAndQuit() {
        if (Lock()) Quit();
    }

    [[nodiscard]] QWidget* Widget() const { return Part()->Widget(); }

    std::atomic<int> quitRequests{0};
    std::atomic<int> dispatched{0};  // messages that came through the port

private:
    std::mutex mutex_;
    std::vector<BMessage> received_;
};

// A test with such a window.
class WindowFixture : public testing::Test {
protected:
    void TearDown() override { window_->LockAndQuit(); }

    // Shows the window with this in it, and gives it the keyboard.
    void Show(BView* content) {
        window_->AddChild(content);
        window_->Show();
        window_->ByHand([this] {
            window_->Widget()->activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(window_->Widget()));
        });
        window_->Take();
    }

    TestWindow* const window_ = new TestWindow;
};

// For use on the server's thread.
template <typename WidgetType>
[[nodiscard]] WidgetType* FindWidget(const BView* view) {
    QWidget* const widget = view->Part()->Widget();
    auto* const self = dynamic_cast<WidgetType*>(widget);
    return self != nullptr ? self : widget->findChild<WidgetType*>();
}
