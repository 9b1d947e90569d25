#include "UserHand.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QWheelEvent>

#include "BView.h"
#include "Mnemonics.h"
#include "ViewPart.h"
#include "WaitUntil.h"
#include "WindowServer.h"

namespace {

// Null for none that is seen.
QWidget* WindowTitled(const std::string& title) {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->windowTitle().startsWith(QString::fromStdString(title)))
            return widget;
    return nullptr;
}

QRadioButton* Radio(const std::string& title, const std::string& label) {
    for (QRadioButton* const button : WindowTitled(title)->findChildren<QRadioButton*>())
        if (WithoutMark(button->text()) == QString::fromStdString(label)) return button;
    return nullptr;
}

Qt::Key ToQt(UserHand::Key key) {
    switch (key) {
        case UserHand::Key::kEnter:
            return Qt::Key_Return;
        case UserHand::Key::kEscape:
            return Qt::Key_Escape;
        default:
            return Qt::Key_Left;
    }
}

QPoint ToQt(BPoint point) {
    return {static_cast<int>(point.x), static_cast<int>(point.y)};
}

}  // namespace

namespace UserHand {

void WaitForWindow(const std::string& title, bool isThere) {
    const auto isSeen = [&] {
        return WindowServer::Ask([&] { return WindowTitled(title) != nullptr; });
    };
    EXPECT_TRUE(WaitUntil([&] { return isSeen() == isThere; })) << title;
}

void Press(const std::string& title, Key key) {
    WindowServer::Perform([&] {
        QWidget* const window = WindowTitled(title);
        QWidget* const focus = window->focusWidget();
        QTest::keyClick(focus == nullptr ? window : focus, ToQt(key));
    });
}

void ClickRadio(const std::string& title, const std::string& label) {
    WindowServer::Perform([&] {
        QRadioButton* const button = Radio(title, label);
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    });
}

bool IsRadioOn(const std::string& title, const std::string& label) {
    return WindowServer::Ask([&] { return Radio(title, label)->isChecked(); });
}

void Type(const std::string& title, const std::string& text) {
    WindowServer::Perform([&] {
        auto* const line = WindowTitled(title)->findChild<QLineEdit*>();
        line->setFocus();
        line->selectAll();
        QTest::keyClicks(line, QString::fromStdString(text));
    });
}

std::string EntryText(const std::string& title) {
    return WindowServer::Ask(
        [&] { return WindowTitled(title)->findChild<QLineEdit*>()->text().toStdString(); });
}

BPoint WindowPlace(const std::string& title) {
    return WindowServer::Ask([&] {
        const QPoint place = WindowTitled(title)->geometry().topLeft();
        return BPoint{static_cast<float>(place.x()), static_cast<float>(place.y())};
    });
}

void MoveWindow(const std::string& title, BPoint place) {
    WindowServer::Perform([&] {
        QWidget* const window = WindowTitled(title);
        window->setGeometry(QRect(ToQt(place), window->size()));
    });
}

std::string ItemText(const std::string& shortcut) {
    return WindowServer::Ask([&] {
        for (const QWidget* const window : QApplication::topLevelWidgets())
            for (const QAction* const action : window->findChildren<QAction*>())
                if (action->shortcut() == QKeySequence(QString::fromStdString(shortcut)))
                    return action->text().toStdString();
        return std::string();
    });
}

void TurnWheel(const BView* view, BPoint at, int notches) {
    WindowServer::Perform([&] {
        QWidget* const widget = view->Part()->Widget();
        const QPointF place(static_cast<qreal>(at.x), static_cast<qreal>(at.y));
        QWheelEvent event(place, widget->mapToGlobal(place), {}, QPoint(0, 120 * notches),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget, &event);
    });
}

void Drag(const BView* view, BPoint from, BPoint over, BPoint to) {
    WindowServer::Perform([&] {
        QWidget* const widget = view->Part()->Widget();
        QTest::mousePress(widget, Qt::LeftButton, {}, ToQt(from));
        QTest::mouseMove(widget, ToQt(over));
        QTest::mouseMove(widget, ToQt(to));
        QTest::mouseRelease(widget, Qt::LeftButton, {}, ToQt(to));
    });
}

void PressIn(const BView* view, Key key) {
    WindowServer::Perform([&] { QTest::keyClick(view->Part()->Widget(), ToQt(key)); });
}

}  // namespace UserHand
