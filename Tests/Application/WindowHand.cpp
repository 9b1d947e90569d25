#include "Tests/Application/WindowHand.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSessionManager>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <algorithm>
#include <cstddef>
#include <future>

#include "Platform/Interface/Server/Mnemonics.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Tests/Application/AppDriver.h"

// All in here is for the window server's thread.
namespace {

struct Item {
    std::string place;
    QAction* action;
    bool canChoose;  // and so can the menus around it
};

std::string Plain(const QString& text) {
    return WithoutMark(text).trimmed().toStdString();
}

std::vector<QWidget*> WindowsTitled(const std::string& title) {
    std::vector<QWidget*> windows;
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle().remove("[*]").toStdString() == title)
            windows.push_back(window);
    return windows;
}

// The answer is `otherwise` when there is no such window.
template <typename Answer, typename Action>
Answer AskWindow(const std::string& title, Answer otherwise, Action action) {
    return WindowServer::Ask([&] {
        const std::vector<QWidget*> windows = WindowsTitled(title);
        return windows.empty() ? otherwise : action(*windows.front());
    });
}

template <typename Action>
void InWindow(const std::string& title, Action action) {
    WindowServer::Perform([&] {
        if (const auto windows = WindowsTitled(title); !windows.empty()) action(*windows.front());
    });
}

void Collect(const QList<QAction*>& actions, const std::string& before, bool canOpen,
             std::vector<Item>* items) {
    for (QAction* const action : actions) {
        if (action->isSeparator()) continue;
        const std::string name = Plain(action->text());
        const std::string place = before + (name.empty() ? "Orvek" : name);
        const bool canChoose = canOpen && action->isEnabled();
        if (const auto* const menu = action->menu<QMenu*>())
            Collect(menu->actions(), place + '/', canChoose, items);
        else
            items->push_back({place, action, canChoose});
    }
}

std::vector<Item> ItemsOf(const QWidget& window) {
    std::vector<Item> items;
    for (const QMenuBar* const bar : window.findChildren<QMenuBar*>())
        Collect(bar->actions(), "", true, &items);
    return items;
}

// Null when there is no such item, or none that can be chosen.
QAction* Find(const QWidget& window, const std::string& place) {
    const std::vector<Item> items = ItemsOf(window);
    const auto found = std::ranges::find(items, place, &Item::place);
    return found != items.end() && found->canChoose ? found->action : nullptr;
}

QFileDialog* Panel() {
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<QFileDialog*>(widget);
            dialog != nullptr && dialog->isVisible())
            return dialog;
    return nullptr;
}

}  // namespace

namespace WindowHand {

// --- Windows ---

int Count(const std::string& title) {
    return WindowServer::Ask([&] { return static_cast<int>(WindowsTitled(title).size()); });
}

void WaitFor(const std::string& title) {
    static_cast<void>(AppDriver::WaitUntil([&] { return Count(title) > 0; }));
}

void Activate(const std::string& title) {
    InWindow(title, [](QWidget& window) { window.activateWindow(); });
}

std::string PageText(const std::string& title) {
    return AskWindow(title, std::string(), [](const QWidget& window) {
        const auto* const page = window.findChild<QTextBrowser*>();
        if (page == nullptr) return std::string();
        QTextCursor cursor = page->cursorForPosition({0, 0});
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        return cursor.selectedText().toStdString();
    });
}

unsigned long long Number(const std::string& title) {
    return AskWindow(title, 0ULL, [](const QWidget& window) { return window.winId(); });
}

void Click(const std::string& title, const std::string& label) {
    InWindow(title, [&](const QWidget& window) {
        for (QAbstractButton* const found : window.findChildren<QAbstractButton*>())
            if (Plain(found->text()) == label) found->click();
    });
}

void Press(const std::string& title, Key key) {
    constexpr Qt::Key kKeys[] = {Qt::Key_Return, Qt::Key_Space, Qt::Key_Escape, Qt::Key_Home,
                                 Qt::Key_Tab,    Qt::Key_F1,    Qt::Key_Down};
    InWindow(title, [&](QWidget& window) {
        QWidget* const focus = window.focusWidget();
        QTest::keyClick(focus == nullptr ? &window : focus, kKeys[static_cast<int>(key)]);
    });
}

void Close(const std::string& title) {
    InWindow(title, [](QWidget& window) { window.close(); });
}

bool IsRenaming(const std::string& title) {
    return AskWindow(title, false, [](const QWidget& window) {
        return window.findChild<QLineEdit*>() != nullptr;
    });
}

std::string Picture(const std::string& title) {
    return AskWindow(title, std::string(), [](QWidget& window) {
        const QImage picture = window.grab().toImage();
        return std::string(reinterpret_cast<const char*>(picture.constBits()),
                           static_cast<std::size_t>(picture.sizeInBytes()));
    });
}

int CountPainted(const std::string& title) {
    return AskWindow(title, 0, [](QWidget& window) {
        const QImage picture = window.grab().toImage();
        const QRgb sky = picture.pixel(picture.rect().center() / 2 + QPoint(0, 40));
        int count = 0;
        for (int y = 0; y < picture.height(); y++)
            for (int x = 0; x < picture.width(); x++)
                count += picture.pixel(x, y) == sky ? 0 : 1;
        return count;
    });
}

// --- Menus ---

std::vector<std::string> Items(const std::string& title) {
    std::vector<std::string> places;
    InWindow(title, [&](const QWidget& window) {
        for (const Item& item : ItemsOf(window))
            places.push_back(item.place);
    });
    return places;
}

bool CanChoose(const std::string& title, const std::string& item) {
    return AskWindow(title, false,
                     [&](const QWidget& window) { return Find(window, item) != nullptr; });
}

bool IsMarked(const std::string& title, const std::string& item) {
    return AskWindow(title, false, [&](const QWidget& window) {
        const QAction* const action = Find(window, item);
        return action != nullptr && action->isChecked();
    });
}

std::string Tip(const std::string& title, const std::string& item) {
    return AskWindow(title, std::string(), [&](const QWidget& window) {
        const QAction* const action = Find(window, item);
        return action == nullptr ? std::string() : action->toolTip().toStdString();
    });
}

void Choose(const std::string& title, const std::string& item) {
    InWindow(title, [&](const QWidget& window) {
        if (QAction* const action = Find(window, item)) action->trigger();
    });
}

// --- The desktop ---

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

std::string PanelFolder() {
    return WindowServer::Ask([] { return Panel()->directory().absolutePath().toStdString(); });
}

}  // namespace WindowHand
