#include "Tests/Displays/UserHand.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTest>

#include "Platform/Interface/Server/Mnemonics.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Tests/Platform/WaitUntil.h"

namespace {

// Null for none that is seen.
QWidget* WindowTitled(const std::string& title) {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->windowTitle().startsWith(QString::fromStdString(title)))
            return widget;
    return nullptr;
}

// The scroll area has hidden ones of its own.
QScrollBar* BarOf(const std::string& title, bool isVertical) {
    const Qt::Orientation orientation = isVertical ? Qt::Vertical : Qt::Horizontal;
    for (QScrollBar* const bar : WindowTitled(title)->findChildren<QScrollBar*>())
        if (bar->orientation() == orientation && !bar->accessibleName().isEmpty()) return bar;
    return nullptr;
}

// In the order of UserHand::Key.
constexpr Qt::Key kKeys[] = {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Left};

// In these or the menus below them.
QAction* FindItem(const QList<QAction*>& items, const std::string& text) {
    for (QAction* const item : items) {
        if (WithoutMark(item->text()).toStdString() == text) return item;
        if (const auto* const menu = item->menu<QMenu*>())
            if (QAction* const found = FindItem(menu->actions(), text)) return found;
    }
    return nullptr;
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
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
        QWidget* const focus = window->focusWidget();
        QTest::keyClick(focus == nullptr ? window : focus, kKeys[static_cast<int>(key)]);
    });
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

void MoveWindow(const std::string& title, BPoint place) {
    WindowServer::Perform([&] {
        QWidget* const window = WindowTitled(title);
        window->setGeometry(QRect(QPointF(place.x, place.y).toPoint(), window->size()));
    });
}

Bar FindBar(const std::string& title, bool isVertical) {
    return WindowServer::Ask([&] {
        const QScrollBar* const bar = BarOf(title, isVertical);
        return Bar{bar->isVisible(), bar->value(), bar->pageStep(),
                   bar->maximum() + bar->pageStep()};
    });
}

void DragBar(const std::string& title, bool isVertical, int by) {
    WindowServer::Perform([&] {
        QScrollBar* const bar = BarOf(title, isVertical);
        bar->setSliderDown(true);
        bar->setSliderPosition(bar->value() + by);
        bar->setSliderDown(false);
    });
}

void Choose(const std::string& title, const std::string& item) {
    WindowServer::Perform(
        [&] { FindItem(WindowTitled(title)->findChild<QMenuBar*>()->actions(), item)->trigger(); });
}

bool IsEnabled(const std::string& title, const std::string& item) {
    return WindowServer::Ask([&] {
        return FindItem(WindowTitled(title)->findChild<QMenuBar*>()->actions(), item)->isEnabled();
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

}  // namespace UserHand
