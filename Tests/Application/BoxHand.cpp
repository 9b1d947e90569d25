#include "BoxHand.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSessionManager>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstddef>
#include <future>

#include "AppDriver.h"
#include "Mnemonics.h"
#include "WindowServer.h"

namespace {

bool IsSeen(const QWidget& window, const std::string& title) {
    return window.isVisible() && window.windowTitle().remove("[*]").toStdString() == title;
}

QWidget* WindowTitled(const std::string& title) {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (IsSeen(*widget, title)) return widget;
    return nullptr;
}

template <typename Action>
void InWindow(const std::string& title, Action action) {
    WindowServer::Perform([&] {
        if (QWidget* const window = WindowTitled(title)) action(*window);
    });
}

std::string Plain(const QString& text) {
    return WithoutMark(text).trimmed().toStdString();
}

// A menu in the menu bar's menus.
QMenu* SubmenuOf(const QWidget& window, const std::string& name) {
    for (const QMenuBar* const bar : window.findChildren<QMenuBar*>())
        for (const QAction* const title : bar->actions())
            for (const QAction* const item : title->menu<QMenu*>()->actions())
                if (Plain(item->text()) == name) return item->menu<QMenu*>();
    return nullptr;
}

QFileDialog* Panel() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<QFileDialog*>(widget);
            dialog != nullptr && dialog->isVisible())
            return dialog;
    return nullptr;
}

void PressKey(const std::string& title, Qt::Key key) {
    InWindow(title, [key](QWidget& window) {
        QWidget* const focus = window.focusWidget();
        QTest::keyClick(focus == nullptr ? &window : focus, key);
    });
}

}  // namespace

namespace BoxHand {

int Count(const std::string& title) {
    return WindowServer::Ask([&] {
        const auto all = QApplication::topLevelWidgets();
        return static_cast<int>(std::count_if(
            all.begin(), all.end(), [&](const QWidget* widget) { return IsSeen(*widget, title); }));
    });
}

void WaitFor(const std::string& title) {
    static_cast<void>(AppDriver::WaitUntil([&] { return Count(title) > 0; }));
}

unsigned long long Number(const std::string& title) {
    unsigned long long number = 0;
    InWindow(title, [&](const QWidget& window) { number = window.winId(); });
    return number;
}

void Press(const std::string& title, const std::string& label) {
    InWindow(title, [&](const QWidget& window) {
        for (QPushButton* const button : window.findChildren<QPushButton*>())
            if (Plain(button->text()) == label) button->click();
    });
}

void Tick(const std::string& title) {
    InWindow(title, [](const QWidget& window) { window.findChild<QCheckBox*>()->click(); });
}

void PressEnter(const std::string& title) {
    PressKey(title, Qt::Key_Return);
}

void PressSpace(const std::string& title) {
    PressKey(title, Qt::Key_Space);
}

void PressEscape(const std::string& title) {
    PressKey(title, Qt::Key_Escape);
}

std::vector<std::string> Submenu(const std::string& title, const std::string& name) {
    std::vector<std::string> labels;
    InWindow(title, [&](const QWidget& window) {
        const QMenu* const menu = SubmenuOf(window, name);
        if (menu == nullptr) return;
        for (const QAction* const action : menu->actions())
            if (!action->isSeparator())
                labels.push_back(action->isEnabled() && menu->menuAction()->isEnabled()
                                     ? Plain(action->text())
                                     : '[' + Plain(action->text()) + ']');
    });
    return labels;
}

void ChooseItem(const std::string& title, const std::string& submenu, const std::string& item) {
    InWindow(title, [&](const QWidget& window) {
        const QMenu* const menu = SubmenuOf(window, submenu);
        if (menu == nullptr) return;
        for (QAction* const action : menu->actions())
            if (Plain(action->text()) == item) action->trigger();
    });
}

// Not in a change that is queued to the server: it goes on with those meanwhile.
void EndSession() {
    std::promise<void> ended;
    WindowServer::Perform([&ended] {
        QTimer::singleShot(0, qApp, [&ended] {
            // Nobody looks at it; the toolkit alone can make one.
            alignas(QSessionManager) std::byte manager[sizeof(QSessionManager)]{};
            Q_EMIT qApp->commitDataRequest(reinterpret_cast<QSessionManager&>(manager));
            ended.set_value();
        });
    });
    ended.get_future().wait();
}

bool IsPanelSeen() {
    return WindowServer::Ask([] { return Panel() != nullptr; });
}

void CancelPanel() {
    WindowServer::Perform([] {
        if (QFileDialog* const panel = Panel()) panel->reject();
    });
}

void MovePanel(BRect frame) {
    WindowServer::Perform([frame] {
        Panel()->setGeometry(static_cast<int>(frame.left), static_cast<int>(frame.top),
                             static_cast<int>(frame.Width()) + 1,
                             static_cast<int>(frame.Height()) + 1);
    });
}

BRect PanelFrame() {
    return WindowServer::Ask([] {
        const QRect rect = Panel()->geometry();
        return BRect{static_cast<float>(rect.left()), static_cast<float>(rect.top()),
                     static_cast<float>(rect.right()), static_cast<float>(rect.bottom())};
    });
}

}  // namespace BoxHand
