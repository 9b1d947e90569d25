#include "Platform/Interface/Handles/BWindow.h"

#include <QIcon>
#include <QLayout>
#include <QMenuBar>
#include <cctype>

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Canvas/PixelImage.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Server/KeyCodes.h"
#include "Platform/Interface/Server/ViewPart.h"
#include "Platform/Interface/Server/WindowList.h"
#include "Platform/Interface/Server/WindowPart.h"

namespace {

template <typename Change>
void ChangeWindow(const std::shared_ptr<WindowPart>& part, Change change) {
    WindowServer::Queue([part, change = std::move(change)] {
        if (part->Widget() != nullptr) change(*part);
    });
}

QSize ToSize(float width, float height) {
    const auto pixels = [](float size) {
        return std::min(static_cast<int>(size) + 1, QWIDGETSIZE_MAX);
    };
    return {pixels(width), pixels(height)};
}

// What lies in the window: its views one below the other, the menu bar on top.
class RootPart : public ViewPart {
public:
    void Place(ViewPart& child) override {
        auto* const bar = qobject_cast<QMenuBar*>(child.Widget());
        if (bar != nullptr && Widget() != nullptr)
            Widget()->layout()->setMenuBar(bar);
        else
            ViewPart::Place(child);
    }
};

// A capital letter of a shortcut is one with the shift key.
uint32 WithShift(uint32 key, uint32 modifiers) {
    const bool isCapital = key < 128 && std::isupper(static_cast<int>(key)) != 0;
    return isCapital ? modifiers | B_SHIFT_KEY : modifiers;
}

}  // namespace

BWindow::BWindow(BRect frame, const char* title, window_type type, uint32 flags)
    : BLooper(title),
      part_(std::make_shared<WindowPart>(type, flags)),
      root_(new BView("root", std::make_shared<RootPart>())),
      flags_(flags) {
    part_->state.frame = frame;
    part_->state.title = title == nullptr ? "" : title;
    WindowServer::Queue([part = part_, root = root_->Part(), frame, name = ToText(title),
                         handle = BMessenger(this)] {
        part->SetHandle(handle);
        part->Create(frame, name, *root);
    });
    root_->Attach(this);
    if ((flags_ & B_NOT_CLOSABLE) == 0) AddShortcut('w', 0, new BMessage(B_QUIT_REQUESTED));
    if (be_app != nullptr) AddShortcut('q', 0, new BMessage(B_QUIT_REQUESTED), be_app);
}

BWindow::~BWindow() {
    WindowList::Remove(this);
    WindowServer::Queue([part = part_] { part->Destroy(); });
    root_->Detach();
}

thread_id BWindow::Run() {
    WindowList::Add(this);
    const thread_id thread = BLooper::Run();
    if (thread < 0) WindowList::Remove(this);
    return thread;
}

void BWindow::Quit() {
    Hide();
    BLooper::Quit();
}

// --- Any thread ---

void BWindow::Show() {
    const auto part = part_;
    {
        const std::lock_guard lock(part->state.mutex);
        part->state.isHidden = false;
    }
    // Running gives the lock up, and the window may be gone when Run returns.
    const bool isRunning = Thread() >= 0;
    ChangeWindow(part, [](WindowPart& window) { window.Show(); });
    if (!isRunning) Run();
}

void BWindow::Hide() {
    {
        const std::lock_guard lock(part_->state.mutex);
        part_->state.isHidden = true;
    }
    ChangeWindow(part_, [](WindowPart& part) { part.Hide(); });
}

bool BWindow::IsHidden() const {
    const std::lock_guard lock(part_->state.mutex);
    return part_->state.isHidden;
}

void BWindow::SetTitle(const char* title) {
    {
        const std::lock_guard lock(part_->state.mutex);
        part_->state.title = title == nullptr ? "" : title;
    }
    ChangeWindow(part_, [text = ToText(title)](WindowPart& part) {
        // "[*]" is where the toolkit marks a changed document.
        part.Widget()->setWindowTitle(text + QLatin1String("[*]"));
    });
}

std::string BWindow::Title() const {
    const std::lock_guard lock(part_->state.mutex);
    return part_->state.title;
}

BRect BWindow::Frame() const {
    const std::lock_guard lock(part_->state.mutex);
    return part_->state.frame;
}

void BWindow::MoveTo(BPoint leftTop) {
    const std::lock_guard lock(part_->state.mutex);
    BRect& frame = part_->state.frame;
    frame = {leftTop.x, leftTop.y, leftTop.x + frame.Width(), leftTop.y + frame.Height()};
    part_->state.placesAsked++;
    ChangeWindow(part_, [place = QPoint(static_cast<int>(leftTop.x), static_cast<int>(leftTop.y))](
                            WindowPart& part) { part.MoveTo(place); });
}

void BWindow::ResizeTo(float width, float height) {
    const std::lock_guard lock(part_->state.mutex);
    BRect& frame = part_->state.frame;
    frame.right = frame.left + width;
    frame.bottom = frame.top + height;
    part_->state.placesAsked++;
    ChangeWindow(part_, [size = ToSize(width, height)](WindowPart& part) { part.ResizeTo(size); });
}

void BWindow::ResizeToPreferred() {
    ChangeWindow(part_, [](WindowPart& part) { part.ResizeToPreferred(); });
}

void BWindow::GetPreferredSize(float* width, float* height) const {
    const QSize size = WindowServer::Ask([part = part_] { return part->PreferredSize(); });
    *width = static_cast<float>(size.width() - 1);
    *height = static_cast<float>(size.height() - 1);
}

void BWindow::CenterOnScreen() {
    ChangeWindow(part_, [](WindowPart& part) { part.CenterOnScreen(); });
}

void BWindow::SetSizeLimits(float minWidth, float maxWidth, float minHeight, float maxHeight) {
    ChangeWindow(part_, [least = ToSize(minWidth, minHeight), most = ToSize(maxWidth, maxHeight)](
                            WindowPart& part) { part.SetSizeLimits(least, most); });
}

void BWindow::Activate(bool isActive) {
    ChangeWindow(part_, [isActive](WindowPart& part) {
        QWidget& widget = *part.Widget();
        if (!isActive) return widget.lower();
        widget.raise();
        widget.activateWindow();
    });
}

bool BWindow::IsActive() const {
    const std::lock_guard lock(part_->state.mutex);
    return part_->state.isActive;
}

void BWindow::SetModified(bool isModified) {
    ChangeWindow(part_, [=](WindowPart& part) { part.Widget()->setWindowModified(isModified); });
}

void BWindow::SetAcceptsFiles(bool accepts) {
    ChangeWindow(part_, [accepts](WindowPart& part) { part.Widget()->setAcceptDrops(accepts); });
}

void BWindow::SetPulseRate(bigtime_t microseconds) {
    ChangeWindow(part_, [=](WindowPart& part) { part.SetPulse(microseconds); });
}

// --- With the lock ---

void BWindow::AddChild(BView* view) {
    root_->AddChild(view);
}

BView* BWindow::FindView(const char* name) const {
    for (int32 i = 0; i < CountChildren(); i++)
        if (BView* const found = ChildAt(i)->FindView(name); found != nullptr) return found;
    return nullptr;
}

void BWindow::SetDefaultButton(BButton* button) {
    ChangeWindow(part_, [view = button == nullptr ? nullptr : button->Part()](WindowPart& part) {
        auto* const widget = view == nullptr ? nullptr : static_cast<QPushButton*>(view->Widget());
        part.SetDefaultButton(widget);
        if (widget != nullptr) widget->setDefault(true);
    });
}

void BWindow::SetCancelButton(BButton* button) {
    ChangeWindow(part_, [view = button == nullptr ? nullptr : button->Part()](WindowPart& part) {
        part.SetCancelButton(view == nullptr ? nullptr : view->Widget());
    });
}

void BWindow::AddShortcut(uint32 key, uint32 modifiers, BMessage* message, const BHandler* target) {
    const std::unique_ptr<BMessage> owned(message);
    if (owned == nullptr) return RemoveShortcut(key, modifiers);
    const BMessenger messenger(target == nullptr ? this : target);
    ChangeWindow(part_, [keys = ToSequence(key, WithShift(key, modifiers)), copy = *owned,
                         messenger](WindowPart& part) { part.AddShortcut(keys, copy, messenger); });
}

void BWindow::RemoveShortcut(uint32 key, uint32 modifiers) {
    ChangeWindow(part_, [keys = ToSequence(key, WithShift(key, modifiers))](WindowPart& part) {
        part.RemoveShortcut(keys);
    });
}

// --- Messages ---

void BWindow::DispatchMessage(BMessage* message, BHandler* handler) {
    if (handler != this) return BLooper::DispatchMessage(message, handler);
    WindowPart::State& state = part_->state;
    // From here on a change is worth another message.
    const auto take = [&state](bool WindowPart::State::*isTold) {
        const std::lock_guard lock(state.mutex);
        state.*isTold = false;
    };
    switch (message->what) {
        case B_WINDOW_MOVED:
            take(&WindowPart::State::isMoveTold);
            FrameMoved({Frame().left, Frame().top});
            break;
        case B_WINDOW_RESIZED:
            take(&WindowPart::State::isResizeTold);
            FrameResized(Frame().Width(), Frame().Height());
            break;
        case B_WINDOW_ACTIVATED:
            take(&WindowPart::State::isActivationTold);
            WindowActivated(IsActive());
            break;
        case B_SCREEN_CHANGED: {
            BRect frame;
            if (message->FindRect(kFrameField, &frame) == B_OK) ScreenChanged(frame);
            break;
        }
        case B_PULSE:
            take(&WindowPart::State::isPulseTold);
            BLooper::DispatchMessage(message, handler);
            break;
        default:
            BLooper::DispatchMessage(message, handler);
    }
}

void BWindow::FrameMoved(BPoint /*leftTop*/) {}

void BWindow::FrameResized(float /*width*/, float /*height*/) {}

void BWindow::WindowActivated(bool /*isActive*/) {}

void BWindow::ScreenChanged(BRect /*frame*/) {}
