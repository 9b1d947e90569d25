// The window server's half of a window: its widget, and what both sides know of the window. Shared
// by the window, the widget and whatever is queued. For the server's thread, except for State.
#pragma once

#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QWidget>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/InterfaceDefs.h"
#include "Platform/Interface/Server/ViewPart.h"
#include "Platform/Support/GraphicsDefs.h"

class WindowPart : public std::enable_shared_from_this<WindowPart> {
public:
    // Any thread, with the mutex held for a moment. The flags tell that a message about it is on
    // its way, so that a second one need not be sent.
    struct State {
        std::mutex mutex;
        BRect frame;
        // By the window, and not yet carried out: until then `frame` is what it asked for.
        int32 placesAsked = 0;
        std::string title;
        bool isHidden = true;
        bool isActive = false;
        bool isMoveTold = false;
        bool isResizeTold = false;
        bool isPulseTold = false;
        bool isActivationTold = false;
    };
    State state;

    WindowPart(window_type type, uint32 flags) : type_(type), flags_(flags) {}

    void Create(BRect frame, const QString& title, ViewPart& root);
    void Destroy();
    [[nodiscard]] QWidget* Widget() const { return widget_; }
    void SetHandle(const BMessenger& window) { window_ = window; }

    void Show();
    void Hide();
    // Carry out one of the places asked.
    void MoveTo(QPoint leftTop);
    void ResizeTo(QSize size);
    void ResizeToPreferred();
    [[nodiscard]] QSize PreferredSize() const;
    void CenterOnScreen();
    void SetSizeLimits(QSize least, QSize greatest);
    void SetPulse(bigtime_t microseconds);
    void SetDefaultButton(QWidget* button) { default_ = button; }
    void SetCancelButton(QWidget* button) { cancel_ = button; }

    void AddShortcut(const QKeySequence& keys, const BMessage& message, const BMessenger& target);
    void RemoveShortcut(const QKeySequence& keys);

private:
    class Content;

    void Tell(const BMessage& message) const { WindowServer::Deliver(window_, message); }
    // Tells `what` unless it is told already.
    void TellOnce(uint32 what, bool State::*isTold);
    void FrameChanged(bool isResized);
    void PlaceDone();
    void ActivationChanged();
    void WatchScreen();
    // Shortcuts of the window give way to those of its menus.
    void YieldToMenus();
    [[nodiscard]] bool PressButton(int key) const;

    const window_type type_;
    const uint32 flags_;
    BMessenger window_;
    QPointer<QWidget> widget_;
    QPointer<QWidget> default_;
    QPointer<QWidget> cancel_;
    QTimer* pulse_ = nullptr;  // the widget's
    std::map<QKeySequence, QPointer<QShortcut>> shortcuts_;
    bool wantsPreferredSize_ = false;
    bool isScreenWatched_ = false;
};
