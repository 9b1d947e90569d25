// A window that keeps the messages that come to it, and what tests need to use it like a user.
#pragma once

#include <QWidget>
#include <deque>
#include <mutex>
#include <vector>

#include "BMessage.h"
#include "BMessenger.h"
#include "BView.h"
#include "BWindow.h"
#include "ViewPart.h"
#include "WindowPart.h"
#include "WindowServer.h"

class TestWindow : public BWindow {
public:
    explicit TestWindow(BRect frame = {100, 100, 399, 299}, window_type type = B_TITLED_WINDOW)
        : BWindow(frame, "test", type) {}

    void MessageReceived(BMessage* message) override {
        {
            const std::lock_guard lock(mutex_);
            received_.push_back(*message);
        }
        BWindow::MessageReceived(message);
    }

    bool QuitRequested() override {
        quitRequests++;
        return false;
    }

    // What came since the last call, except pings.
    std::vector<BMessage> Take() {
        const std::lock_guard lock(mutex_);
        std::vector<BMessage> taken;
        for (const BMessage& message : received_)
            if (message.what != kPing) taken.push_back(message);
        received_.clear();
        return taken;
    }

    // Waits until the server has done what was queued, and the looper what came of that.
    void Settle() {
        for (int i = 0; i < 3; i++) {
            WindowServer::Perform([] {});
            BMessage reply;
            const BMessage ping(kPing);
            (void)BMessenger(static_cast<BHandler*>(this)).SendMessage(&ping, &reply);
        }
    }

    void LockAndQuit() {
        if (Lock()) Quit();
    }

    [[nodiscard]] QWidget* Widget() const { return Part()->Widget(); }

    static constexpr uint32 kPing = FourCC("ping");
    std::atomic<int> quitRequests{0};

private:
    std::mutex mutex_;
    std::deque<BMessage> received_;
};

// For use on the server's thread.
template <typename WidgetType>
[[nodiscard]] WidgetType* FindWidget(const BView* view) {
    QWidget* const widget = view->Part()->Widget();
    auto* const self = dynamic_cast<WidgetType*>(widget);
    return self != nullptr ? self : widget->findChild<WidgetType*>();
}
