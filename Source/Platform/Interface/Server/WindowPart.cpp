#include "Platform/Interface/Server/WindowPart.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Server/Mnemonics.h"
#include "Platform/Storage/entry_ref.h"

namespace {

// What window managers put beside the title.
constexpr int kTitleButtons = 120;

QRect ToQtRect(BRect frame) {
    return {static_cast<int>(frame.left), static_cast<int>(frame.top),
            static_cast<int>(frame.Width()) + 1, static_cast<int>(frame.Height()) + 1};
}

BRect ToFrame(const QRect& rect) {
    return {static_cast<float>(rect.left()), static_cast<float>(rect.top()),
            static_cast<float>(rect.right()), static_cast<float>(rect.bottom())};
}

Qt::WindowFlags ToQtFlags(window_type type, uint32 flags) {
    Qt::WindowFlags result = Qt::Window;
    if (type == B_FLOATING_WINDOW) result = Qt::Tool;
    if (type == B_MODAL_WINDOW) result = Qt::Dialog;
    constexpr uint32 kLimited = B_NOT_CLOSABLE | B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE;
    if ((flags & kLimited) == 0) return result;
    result |= Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    if ((flags & B_NOT_CLOSABLE) == 0) result |= Qt::WindowCloseButtonHint;
    if ((flags & B_NOT_ZOOMABLE) == 0) result |= Qt::WindowMaximizeButtonHint;
    if ((flags & B_NOT_MINIMIZABLE) == 0) result |= Qt::WindowMinimizeButtonHint;
    return result;
}

void CollectShortcuts(const QWidget& menu, QList<QKeySequence>* keys) {
    for (const QAction* const action : menu.actions()) {
        if (!action->shortcut().isEmpty()) keys->append(action->shortcut());
        if (const auto* const submenu = action->menu<QMenu*>(); submenu != nullptr)
            CollectShortcuts(*submenu, keys);
    }
}

BMessage FilesMessage(const QMimeData& data) {
    BMessage message(B_REFS_RECEIVED);
    for (const QUrl& url : data.urls()) {
        entry_ref ref;
        if (url.isLocalFile() &&
            get_ref_for_path(url.toLocalFile().toUtf8().constData(), &ref) == B_OK)
            message.AddRef(kRefsField, &ref);
    }
    return message;
}

}  // namespace

// The widget; all that the user does to the window itself comes through here.
class WindowPart::Content : public QWidget {
public:
    Content(WindowPart& part, Qt::WindowFlags flags) : QWidget(nullptr, flags), part_(part) {}

protected:
    bool event(QEvent* event) override {
        // Comes before any shortcut is looked up.
        if (event->type() == QEvent::ShortcutOverride) part_.YieldToMenus();
        return QWidget::event(event);
    }

    void closeEvent(QCloseEvent* event) override {
        event->ignore();  // the looper decides
        part_.Tell(BMessage(B_QUIT_REQUESTED));
    }

    void resizeEvent(QResizeEvent* /*event*/) override { part_.FrameChanged(true); }
    void moveEvent(QMoveEvent* /*event*/) override { part_.FrameChanged(false); }
    void showEvent(QShowEvent* /*event*/) override { part_.WatchScreen(); }

    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::ActivationChange) part_.ActivationChanged();
        QWidget::changeEvent(event);
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (!part_.PressButton(event->key())) QWidget::keyPressEvent(event);
    }

    void dragEnterEvent(QDragEnterEvent* event) override {
        if (event->mimeData()->hasUrls()) event->acceptProposedAction();
    }

    void dropEvent(QDropEvent* event) override {
        const BMessage message = FilesMessage(*event->mimeData());
        if (message.HasName(kRefsField)) part_.Tell(message);
        event->acceptProposedAction();
    }

private:
    WindowPart& part_;  // held by the widget
};

void WindowPart::Create(BRect frame, const QString& title, ViewPart& root) {
    widget_ = new Content(*this, ToQtFlags(type_, flags_));
    QObject::connect(widget_, &QObject::destroyed, [part = shared_from_this()] {});
    widget_->setWindowTitle(title);
    pulse_ = new QTimer(widget_);
    QObject::connect(pulse_, &QTimer::timeout, widget_,
                     [this] { TellOnce(B_PULSE, &State::isPulseTold); });
    auto* const layout = new QVBoxLayout(widget_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(root.Widget());
    wantsPreferredSize_ = frame.right < frame.left || frame.bottom < frame.top;
    if (wantsPreferredSize_)
        widget_->setGeometry(static_cast<int>(frame.left), static_cast<int>(frame.top), 1, 1);
    else
        widget_->setGeometry(ToQtRect(frame));
}

void WindowPart::Destroy() {
    if (widget_ == nullptr) return;
    window_ = {};
    widget_->hide();
    widget_->deleteLater();
}

// --- Place and size ---

void WindowPart::Show() {
    if (widget_ == nullptr) return;
    if (wantsPreferredSize_) ResizeToPreferred();
    if ((flags_ & B_NOT_RESIZABLE) != 0) widget_->setFixedSize(widget_->size());
    MarkLabels(*widget_);
    widget_->show();
    if (pulse_->interval() > 0) pulse_->start();
}

void WindowPart::Hide() {
    if (widget_ == nullptr) return;
    widget_->hide();
    pulse_->stop();
}

void WindowPart::MoveTo(QPoint leftTop) {
    widget_->setGeometry(QRect(leftTop, widget_->size()));
    PlaceDone();
}

void WindowPart::ResizeTo(QSize size) {
    wantsPreferredSize_ = false;
    if ((flags_ & B_NOT_RESIZABLE) != 0) widget_->setFixedSize(size);
    widget_->resize(size);
    PlaceDone();
}

// The toolkit may have refused some of it.
void WindowPart::PlaceDone() {
    const std::lock_guard lock(state.mutex);
    if (--state.placesAsked == 0) state.frame = ToFrame(widget_->geometry());
}

QSize WindowPart::PreferredSize() const {
    if (widget_ == nullptr) return {};
    widget_->layout()->activate();
    return widget_->sizeHint().expandedTo(widget_->minimumSize());
}

void WindowPart::ResizeToPreferred() {
    if (widget_ == nullptr) return;
    wantsPreferredSize_ = false;
    widget_->layout()->activate();
    // Wide enough for the title, too.
    QFont font = widget_->font();
    font.setBold(true);
    const QString title = widget_->windowTitle().remove(QLatin1String("[*]"));
    const int width = QFontMetrics(font).horizontalAdvance(title) + kTitleButtons;
    widget_->resize(
        widget_->sizeHint().expandedTo(widget_->minimumSize()).expandedTo(QSize(width, 0)));
}

void WindowPart::CenterOnScreen() {
    if (widget_ == nullptr) return;
    if (wantsPreferredSize_) ResizeToPreferred();
    QRect place(QPoint(), widget_->size());
    place.moveCenter(widget_->screen()->availableGeometry().center());
    widget_->setGeometry(place);
}

void WindowPart::SetSizeLimits(QSize least, QSize greatest) {
    if (widget_ == nullptr) return;
    widget_->setMinimumSize(least);
    widget_->setMaximumSize(greatest);
    // A window that is hidden hears of no new size.
    const std::lock_guard lock(state.mutex);
    if (state.placesAsked == 0) state.frame = ToFrame(widget_->geometry());
}

void WindowPart::FrameChanged(bool isResized) {
    {
        const std::lock_guard lock(state.mutex);
        if (state.placesAsked == 0) state.frame = ToFrame(widget_->geometry());
    }
    if (isResized)
        TellOnce(B_WINDOW_RESIZED, &State::isResizeTold);
    else
        TellOnce(B_WINDOW_MOVED, &State::isMoveTold);
}

void WindowPart::WatchScreen() {
    QWindow* const handle = widget_->windowHandle();
    if (isScreenWatched_ || handle == nullptr) return;
    isScreenWatched_ = true;
    QObject::connect(handle, &QWindow::screenChanged, widget_, [this](const QScreen* screen) {
        if (screen == nullptr) return;
        BMessage message(B_SCREEN_CHANGED);
        message.AddRect(kFrameField, ToFrame(screen->geometry()));
        Tell(message);
    });
}

// --- Messages ---

void WindowPart::TellOnce(uint32 what, bool State::*isTold) {
    {
        const std::lock_guard lock(state.mutex);
        if (state.*isTold) return;
        state.*isTold = true;
    }
    Tell(BMessage(what));
}

void WindowPart::ActivationChanged() {
    {
        const std::lock_guard lock(state.mutex);
        state.isActive = widget_->isActiveWindow();
    }
    TellOnce(B_WINDOW_ACTIVATED, &State::isActivationTold);
}

void WindowPart::SetPulse(bigtime_t microseconds) {
    if (widget_ == nullptr) return;
    const int milliseconds = static_cast<int>((microseconds + 999) / 1000);
    pulse_->setInterval(milliseconds);
    if (milliseconds > 0 && widget_->isVisible())
        pulse_->start();
    else
        pulse_->stop();
}

// --- Keys ---

void WindowPart::AddShortcut(const QKeySequence& keys, const BMessage& message,
                             const BMessenger& target) {
    RemoveShortcut(keys);
    if (widget_ == nullptr) return;
    auto* const shortcut = new QShortcut(keys, widget_);
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, widget_,
                     [message, target] { WindowServer::Deliver(target, message); });
    shortcuts_[keys] = shortcut;
}

void WindowPart::RemoveShortcut(const QKeySequence& keys) {
    const auto found = shortcuts_.find(keys);
    if (found == shortcuts_.end()) return;
    if (found->second != nullptr) {
        found->second->setEnabled(false);
        found->second->deleteLater();
    }
    shortcuts_.erase(found);
}

void WindowPart::YieldToMenus() {
    QList<QKeySequence> taken;
    for (const QMenuBar* const bar : widget_->findChildren<QMenuBar*>())
        CollectShortcuts(*bar, &taken);
    for (const auto& [keys, shortcut] : shortcuts_)
        if (shortcut != nullptr) shortcut->setEnabled(!taken.contains(keys));
}

bool WindowPart::PressButton(int key) const {
    QWidget* wanted = nullptr;
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        // Whoever has gone to another button wants that one.
        wanted = qobject_cast<QPushButton*>(widget_->focusWidget());
        if (wanted == nullptr) wanted = default_;
    }
    if (key == Qt::Key_Escape) wanted = cancel_;
    if (key == Qt::Key_Escape && cancel_ == nullptr && (flags_ & B_CLOSE_ON_ESCAPE) != 0) {
        Tell(BMessage(B_QUIT_REQUESTED));
        return true;
    }
    auto* const button = qobject_cast<QPushButton*>(wanted);
    if (button == nullptr || !button->isEnabled() || !button->isVisible()) return false;
    button->click();
    return true;
}
