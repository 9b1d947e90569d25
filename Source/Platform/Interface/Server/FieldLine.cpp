#include "Platform/Interface/Server/FieldLine.h"

#include <QDropEvent>
#include <QFocusEvent>
#include <QMouseEvent>

FieldLine::FieldLine() {
    QObject::connect(this, &QLineEdit::returnPressed, this, &QLineEdit::selectAll);
}

bool FieldLine::HasKeyboard() const {
    return window()->focusWidget() == this;
}

void FieldLine::focusInEvent(QFocusEvent* event) {
    isEntered_ =
        event->reason() == Qt::MouseFocusReason || event->reason() == Qt::ActiveWindowFocusReason;
    QLineEdit::focusInEvent(event);
}

void FieldLine::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) isFirstClick_ = isEntered_ || !hasFocus();
    isEntered_ = false;
    QLineEdit::mousePressEvent(event);
}

void FieldLine::mouseReleaseEvent(QMouseEvent* event) {
    QLineEdit::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton) return;
    // What was dragged over is what the user wants.
    if (isFirstClick_ && !hasSelectedText()) selectAll();
    isFirstClick_ = false;
}

void FieldLine::dropEvent(QDropEvent* event) {
    setFocus(Qt::OtherFocusReason);
    QLineEdit::dropEvent(event);
}
