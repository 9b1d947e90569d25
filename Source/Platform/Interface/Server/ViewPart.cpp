#include "Platform/Interface/Server/ViewPart.h"

#include <QApplication>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>

namespace {

// The toolkit's own window of tips, of which it has one.
constexpr const char* kTipClass = "QTipLabel";

}  // namespace

void ViewPart::Create() {
    widget_ = Make();
    // Holds the part for as long as the widget can call it.
    QObject::connect(widget_, &QObject::destroyed, [part = shared_from_this()] {});
}

void ViewPart::Destroy() {
    if (widget_ == nullptr) return;
    widget_->hide();
    widget_->deleteLater();
}

QWidget* ViewPart::Make() {
    auto* const widget = new QWidget;
    auto* const layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    return widget;
}

void ViewPart::Place(ViewPart& child) {
    if (widget_ == nullptr || child.Widget() == nullptr || widget_->layout() == nullptr) return;
    widget_->layout()->addWidget(child.Widget());
}

void ViewPart::Remove(ViewPart& child) {
    QWidget* const widget = child.Widget();
    if (widget == nullptr) return;
    if (QWidget* const parent = widget->parentWidget(); parent != nullptr && parent->layout())
        parent->layout()->removeWidget(widget);
    widget->setParent(nullptr);
}

void ViewPart::SetEnabled(bool isEnabled) {
    if (widget_ == nullptr || widget_->isEnabled() == isEnabled) return;
    QWidget* const window = widget_->window();
    QWidget* const focus = window->focusWidget();
    const bool isInside = focus == widget_ || widget_->isAncestorOf(focus);
    if (!isEnabled && isInside && widget_ != window) {
        hadFocus_ = focus;
        window->setFocus(Qt::OtherFocusReason);
    }
    widget_->setEnabled(isEnabled);
    if (!isEnabled) return;
    if (hadFocus_ != nullptr && focus == window) hadFocus_->setFocus(Qt::OtherFocusReason);
    hadFocus_ = nullptr;
}

QString ToText(const char* text) {
    return text == nullptr ? QString() : QString::fromUtf8(text);
}

QString ToText(const std::string& text) {
    return QString::fromStdString(text);
}

QString ToLabel(const std::string& label) {
    return ToText(label).replace(QLatin1Char('&'), QLatin1String("&&"));
}

void ShowPassingTip(QPoint place, const QString& text, QWidget* owner, int milliseconds) {
    QToolTip::showText(place, text, owner, {}, milliseconds);
    for (const QWidget* const window : QApplication::topLevelWidgets())
        if (window->inherits(kTipClass) && window->windowHandle() != nullptr)
            window->windowHandle()->setFlag(Qt::WindowTransparentForInput);
}
