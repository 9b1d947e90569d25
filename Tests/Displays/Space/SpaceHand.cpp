#include "Tests/Displays/Space/SpaceHand.h"

#include <QApplication>
#include <QTest>
#include <QWheelEvent>

#include "Platform/Interface/Server/WindowServer.h"

namespace {

constexpr Qt::Key kKeys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down,
                             Qt::Key_Plus, Qt::Key_Minus, Qt::Key_X,  Qt::Key_Y,
                             Qt::Key_Z,    Qt::Key_P,     Qt::Key_O,  Qt::Key_Escape};

// The largest area of the window that the mouse is followed over.
QWidget* FindPicture(const std::string& title) {
    QWidget* found = nullptr;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() ||
            !window->windowTitle().startsWith(QString::fromStdString(title)))
            continue;
        for (QWidget* const widget : window->findChildren<QWidget*>()) {
            if (!widget->testAttribute(Qt::WA_OpaquePaintEvent)) continue;
            if (found == nullptr ||
                widget->width() * widget->height() > found->width() * found->height())
                found = widget;
        }
    }
    return found;
}

QPoint Place(const QWidget& picture, BPoint fromMiddle) {
    return picture.rect().center() + QPointF(fromMiddle.x, fromMiddle.y).toPoint();
}

Qt::KeyboardModifiers Modifiers(bool withShift) {
    return withShift ? Qt::ShiftModifier : Qt::NoModifier;
}

Qt::KeyboardModifiers ModifiersOf(SpaceHand::With with) {
    if (with == SpaceHand::With::kCtrl) return Qt::ControlModifier;
    return Modifiers(with == SpaceHand::With::kShift);
}

void Move(QWidget* picture, QPoint place, Qt::MouseButton button, bool withShift) {
    QMouseEvent event(QEvent::MouseMove, place, picture->mapToGlobal(place), Qt::NoButton, button,
                      Modifiers(withShift));
    QApplication::sendEvent(picture, &event);
}

}  // namespace

namespace SpaceHand {

void Drag(const std::string& title, Button button, BPoint way, bool withShift) {
    constexpr int kMoves = 5;
    const Qt::MouseButton held = button == Button::kLeft ? Qt::LeftButton : Qt::RightButton;
    WindowServer::Perform([&] {
        QWidget* const picture = FindPicture(title);
        QTest::mousePress(picture, held, Modifiers(withShift), Place(*picture, {}));
        for (int i = 1; i <= kMoves; i++) {
            const float part = static_cast<float>(i) / kMoves;
            Move(picture, Place(*picture, {part * way.x, part * way.y}), held, withShift);
        }
        QTest::mouseRelease(picture, held, Modifiers(withShift), Place(*picture, way));
    });
}

// With a hand that trembles.
void Click(const std::string& title, BPoint fromMiddle) {
    WindowServer::Perform([&] {
        QWidget* const picture = FindPicture(title);
        const QPoint place = Place(*picture, fromMiddle);
        QTest::mousePress(picture, Qt::LeftButton, Qt::NoModifier, place);
        Move(picture, place + QPoint(1, 1), Qt::LeftButton, false);
        QTest::mouseRelease(picture, Qt::LeftButton, Qt::NoModifier, place);
    });
}

void DoubleClick(const std::string& title, BPoint fromMiddle) {
    WindowServer::Perform([&] {
        QWidget* const picture = FindPicture(title);
        QTest::mouseDClick(picture, Qt::LeftButton, Qt::NoModifier, Place(*picture, fromMiddle));
    });
}

void TurnWheel(const std::string& title, BPoint fromMiddle, int notches, bool withShift) {
    WindowServer::Perform([&] {
        QWidget* const picture = FindPicture(title);
        const QPoint place = Place(*picture, fromMiddle);
        QWheelEvent event(place, picture->mapToGlobal(place), {}, {0, 120 * notches}, Qt::NoButton,
                          Modifiers(withShift), Qt::NoScrollPhase, false);
        QApplication::sendEvent(picture, &event);
    });
}

void PressButton(const std::string& title, BPoint at, With with) {
    WindowServer::Perform([&] {
        QWidget* const picture = FindPicture(title);
        QTest::mousePress(picture, Qt::LeftButton, ModifiersOf(with), Place(*picture, at));
    });
}

void MoveTo(const std::string& title, BPoint at, With with) {
    WindowServer::Perform([&] {
        QWidget* const picture = FindPicture(title);
        const QPoint place = Place(*picture, at);
        QMouseEvent event(QEvent::MouseMove, place, picture->mapToGlobal(place), Qt::NoButton,
                          Qt::LeftButton, ModifiersOf(with));
        QApplication::sendEvent(picture, &event);
    });
}

void Release(const std::string& title, BPoint at, With with) {
    WindowServer::Perform([&] {
        QWidget* const picture = FindPicture(title);
        QTest::mouseRelease(picture, Qt::LeftButton, ModifiersOf(with), Place(*picture, at));
    });
}

void HoldKey(const std::string& title, Key key, bool isDown) {
    WindowServer::Perform([&] {
        const Qt::Key code = kKeys[static_cast<int>(key)];
        QWidget* const picture = FindPicture(title);
        if (isDown)
            QTest::keyPress(picture, code);
        else
            QTest::keyRelease(picture, code);
    });
}

void Press(const std::string& title, Key key, bool withShift) {
    WindowServer::Perform([&] {
        QTest::keyClick(FindPicture(title), kKeys[static_cast<int>(key)], Modifiers(withShift));
    });
}

}  // namespace SpaceHand
