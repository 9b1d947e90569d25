#include "Platform/Interface/Canvas/CanvasSurface.h"

#include <QGestureEvent>
#include <QNativeGestureEvent>
#include <QPinchGesture>
#include <QWheelEvent>

#include "Platform/Interface/Server/KeyCodes.h"

namespace {

constexpr float kWheelNotch = 120.0f;

}  // namespace

CanvasPart::Surface::Surface(CanvasPart& part) : part_(part) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoSystemBackground);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    grabGesture(Qt::PinchGesture);
}

bool CanvasPart::Surface::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto& gesture = static_cast<const QNativeGestureEvent&>(*event);
        if (gesture.gestureType() == Qt::ZoomNativeGesture) {
            NotePinch(gesture.position(), 1.0 + gesture.value());
            return true;
        }
    }
    if (event->type() == QEvent::Gesture) {
        auto* const gestures = static_cast<QGestureEvent*>(event);
        if (const auto* const pinch =
                static_cast<QPinchGesture*>(gestures->gesture(Qt::PinchGesture))) {
            NotePinch(mapFromGlobal(pinch->centerPoint()), pinch->scaleFactor());
            return true;
        }
    }
    return QWidget::event(event);
}

void CanvasPart::Surface::paintEvent(QPaintEvent* event) {
    CheckScale();
    part_.Paint(this, *event);
}

void CanvasPart::Surface::resizeEvent(QResizeEvent* /*event*/) {
    part_.SizeChanged(*this);
}

void CanvasPart::Surface::CheckScale() {
    if (part_.GetPlace().scale != devicePixelRatioF()) part_.SizeChanged(*this);
}

void CanvasPart::Surface::Note(MouseEvent::Kind kind, const QSinglePointEvent& event,
                               int32 clicks) {
    MouseEvent noted;
    noted.kind = kind;
    noted.input = {
        part_.ToCanvas(event.position()),
        ToButtons(event.buttons()),
        ToModifiers(event.modifiers()),
        clicks,
        {static_cast<float>(event.position().x()), static_cast<float>(event.position().y())}};
    part_.Put(noted);
}

void CanvasPart::Surface::NotePinch(QPointF where, double factor) {
    part_.Put(PinchInput{part_.ToCanvas(where), static_cast<float>(factor)});
}

void CanvasPart::Surface::mousePressEvent(QMouseEvent* event) {
    Note(MouseEvent::Kind::kDown, *event, 1);
}

void CanvasPart::Surface::mouseDoubleClickEvent(QMouseEvent* event) {
    Note(MouseEvent::Kind::kDown, *event, 2);
}

void CanvasPart::Surface::mouseReleaseEvent(QMouseEvent* event) {
    Note(MouseEvent::Kind::kUp, *event, 1);
}

void CanvasPart::Surface::mouseMoveEvent(QMouseEvent* event) {
    Note(MouseEvent::Kind::kMoved, *event, 1);
}

void CanvasPart::Surface::enterEvent(QEnterEvent* event) {
    Note(MouseEvent::Kind::kEntered, *event, 1);
}

void CanvasPart::Surface::leaveEvent(QEvent* /*event*/) {
    MouseEvent noted;
    noted.kind = MouseEvent::Kind::kExited;
    const QPoint at = mapFromGlobal(QCursor::pos());
    noted.input.where = part_.ToCanvas(at);
    noted.input.inView = {static_cast<float>(at.x()), static_cast<float>(at.y())};
    part_.Put(noted);
}

void CanvasPart::Surface::wheelEvent(QWheelEvent* event) {
    const QPoint angle = event->angleDelta();
    part_.Put(
        WheelInput{part_.ToCanvas(event->position()), static_cast<float>(angle.x()) / kWheelNotch,
                   static_cast<float>(angle.y()) / kWheelNotch, ToModifiers(event->modifiers())});
    event->accept();
}

void CanvasPart::Surface::keyPressEvent(QKeyEvent* event) {
    const uint32 key = ToKey(*event);
    if (key != 0) part_.Put(KeyInput{key, ToModifiers(event->modifiers())});
    // These two press the window's default and cancel buttons.
    if (key == 0 || key == B_ENTER || key == B_ESCAPE) QWidget::keyPressEvent(event);
}

void CanvasPart::Surface::keyReleaseEvent(QKeyEvent* event) {
    const uint32 key = ToKey(*event);
    // One that is held repeats itself.
    if (key != 0 && !event->isAutoRepeat())
        part_.Put(KeyInput{key, ToModifiers(event->modifiers()), true});
    QWidget::keyReleaseEvent(event);
}
