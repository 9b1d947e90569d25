#include "Platform/Interface/Handles/BView.h"

#include <algorithm>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

int LayoutSize(float size, int otherwise) {
    return size < 0.0f ? otherwise : static_cast<int>(size);
}

BRect ToRect(const QRect& rect) {
    return {static_cast<float>(rect.left()), static_cast<float>(rect.top()),
            static_cast<float>(rect.right()), static_cast<float>(rect.bottom())};
}

}  // namespace

BView::BView(const char* name) : BView(name, std::make_shared<ViewPart>()) {}

BView::BView(const char* name, std::shared_ptr<ViewPart> part)
    : BHandler(name), part_(std::move(part)) {
    WindowServer::Queue([server = part_] { server->Create(); });
}

BView::BView(BMessage* archive, std::shared_ptr<ViewPart> part)
    : BHandler(archive), part_(std::move(part)) {
    WindowServer::Queue([server = part_] { server->Create(); });
}

BView::~BView() {
    // First the widget with all that is in it, so that nothing is seen falling apart.
    WindowServer::Queue([part = part_] { part->Destroy(); });
    if (parent_ != nullptr) std::erase(parent_->children_, this);
    while (!children_.empty())
        delete children_.back();
}

// --- Tree ---

void BView::AddChild(BView* child) {
    Adopt(child);
    WindowServer::Queue([part = part_, other = child->part_] { part->Place(*other); });
}

void BView::Adopt(BView* child) {
    if (child->parent_ != nullptr) debugger("A view was added that has a parent.");
    child->parent_ = this;
    children_.push_back(child);
    if (window_ != nullptr) child->Attach(window_);
}

bool BView::RemoveChild(BView* child) {
    if (child == nullptr || child->parent_ != this) return false;
    child->Detach();
    std::erase(children_, child);
    child->parent_ = nullptr;
    WindowServer::Queue([part = child->part_] { ViewPart::Remove(*part); });
    return true;
}

BView* BView::ChildAt(int32 index) const {
    if (index < 0 || index >= CountChildren()) return nullptr;
    return children_[static_cast<std::size_t>(index)];
}

BView* BView::FindView(const char* name) {
    if (name == nullptr) return nullptr;
    if (Name() == name) return this;
    for (BView* child : children_)
        if (BView* const found = child->FindView(name); found != nullptr) return found;
    return nullptr;
}

void BView::Attach(BWindow* window) {
    window_ = window;
    window->AddHandler(this);
    WindowServer::Queue([part = part_, handle = BMessenger(this)] { part->SetHandle(handle); });
    AttachedToWindow();
    for (BView* child : children_)
        child->Attach(window);
}

void BView::Detach() {
    if (window_ == nullptr) return;
    for (BView* child : children_)
        child->Detach();
    DetachedFromWindow();
    window_->RemoveHandler(this);
    window_ = nullptr;
    WindowServer::Queue([part = part_] { part->SetHandle({}); });
}

// --- Looks ---

void BView::Hide() {
    isHidden_ = true;
    ChangeWidget<QWidget>(part_, [](QWidget& widget) { widget.hide(); });
}

void BView::Show() {
    isHidden_ = false;
    ChangeWidget<QWidget>(part_, [](QWidget& widget) { widget.show(); });
}

void BView::MakeFocus(bool isFocus) {
    ChangeWidget<QWidget>(part_, [isFocus](QWidget& widget) {
        if (isFocus)
            widget.setFocus(Qt::OtherFocusReason);
        else
            widget.clearFocus();
    });
}

void BView::SetToolTip(const char* text) {
    ChangeWidget<QWidget>(part_, [tip = ToText(text)](QWidget& widget) { widget.setToolTip(tip); });
}

void BView::SetAccessibleName(const char* text) {
    ChangeWidget<QWidget>(part_, [name = ToText(text)](QWidget& widget) {
        // What has the keyboard is what a screen reader looks at.
        QWidget* const inner = widget.focusProxy();
        (inner == nullptr ? widget : *inner).setAccessibleName(name);
    });
}

void BView::SetAccessibleDescription(const char* text) {
    ChangeWidget<QWidget>(part_, [description = ToText(text)](QWidget& widget) {
        widget.setAccessibleDescription(description);
    });
}

void BView::SetExplicitMinSize(float width, float height) {
    ChangeWidget<QWidget>(part_, [=](QWidget& widget) {
        widget.setMinimumSize(LayoutSize(width, 0), LayoutSize(height, 0));
    });
}

void BView::SetExplicitMaxSize(float width, float height) {
    ChangeWidget<QWidget>(part_, [=](QWidget& widget) {
        widget.setMaximumSize(LayoutSize(width, QWIDGETSIZE_MAX),
                              LayoutSize(height, QWIDGETSIZE_MAX));
    });
}

void BView::SetStretch(int32 horizontal, int32 vertical) {
    ChangeWidget<QWidget>(part_, [=](QWidget& widget) {
        QSizePolicy policy = widget.sizePolicy();
        policy.setHorizontalStretch(horizontal);
        policy.setVerticalStretch(vertical);
        if (horizontal > 0) policy.setHorizontalPolicy(QSizePolicy::Expanding);
        if (vertical > 0) policy.setVerticalPolicy(QSizePolicy::Expanding);
        widget.setSizePolicy(policy);
    });
}

BRect BView::Bounds() const {
    return WindowServer::Ask([part = part_] {
        const QWidget* const widget = part->Widget();
        return widget == nullptr ? BRect{} : ToRect(widget->rect());
    });
}

// --- Messages ---

void BView::MessageReceived(BMessage* message) {
    if (message->what == kViewChanged)
        Changed(*message);
    else
        BHandler::MessageReceived(message);
}

void BView::Changed(const BMessage& /*message*/) {}
