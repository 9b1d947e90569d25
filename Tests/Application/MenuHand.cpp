#include "MenuHand.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <algorithm>

#include "Mnemonics.h"
#include "WindowServer.h"

namespace {

struct Item {
    std::string place;
    QAction* action;
};

std::string Plain(const QString& text) {
    return WithoutMark(text).trimmed().toStdString();
}

void Collect(const QList<QAction*>& actions, const std::string& before, std::vector<Item>* items) {
    for (QAction* const action : actions) {
        if (action->isSeparator()) continue;
        const std::string name = Plain(action->text());
        const std::string place = before + (name.empty() ? "Orvek" : name);
        if (const auto* const menu = action->menu<QMenu*>())
            Collect(menu->actions(), place + '/', items);
        else
            items->push_back({place, action});
    }
}

// The first window with this title that is seen, as the other ones here on the window server's
// thread.
QWidget* WindowTitled(const std::string& title) {
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowTitle().remove("[*]").toStdString() == title)
            return window;
    return nullptr;
}

std::vector<Item> ItemsOf(const std::string& title) {
    std::vector<Item> items;
    if (const QWidget* const window = WindowTitled(title))
        for (const QMenuBar* const bar : window->findChildren<QMenuBar*>())
            Collect(bar->actions(), "", &items);
    return items;
}

// Null when there is no such item, or none that can be chosen.
QAction* Find(const std::string& title, const std::string& place) {
    const std::vector<Item> items = ItemsOf(title);
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const Item& item) { return item.place == place; });
    return found != items.end() && found->action->isEnabled() ? found->action : nullptr;
}

}  // namespace

namespace MenuHand {

std::vector<std::string> Items(const std::string& title) {
    return WindowServer::Ask([&] {
        std::vector<std::string> places;
        for (const Item& item : ItemsOf(title))
            places.push_back(item.place);
        return places;
    });
}

bool CanChoose(const std::string& title, const std::string& item) {
    return WindowServer::Ask([&] { return Find(title, item) != nullptr; });
}

bool IsMarked(const std::string& title, const std::string& item) {
    return WindowServer::Ask([&] {
        const QAction* const action = Find(title, item);
        return action != nullptr && action->isChecked();
    });
}

void Choose(const std::string& title, const std::string& item) {
    WindowServer::Perform([&] {
        if (QAction* const action = Find(title, item)) action->trigger();
    });
}

void Close(const std::string& title) {
    WindowServer::Perform([&] {
        if (QWidget* const window = WindowTitled(title)) window->close();
    });
}

void SelectFirst(const std::string& title) {
    WindowServer::Perform([&] {
        if (QWidget* const window = WindowTitled(title))
            QTest::keyClick(window->focusWidget(), Qt::Key_Home);
    });
}

bool IsRenaming(const std::string& title) {
    return WindowServer::Ask([&] {
        const QWidget* const window = WindowTitled(title);
        return window != nullptr && window->findChild<QLineEdit*>() != nullptr;
    });
}

std::string Picture(const std::string& title) {
    return WindowServer::Ask([&] {
        QWidget* const window = WindowTitled(title);
        if (window == nullptr) return std::string();
        const QImage picture = window->grab().toImage();
        return std::string(reinterpret_cast<const char*>(picture.constBits()),
                           static_cast<std::size_t>(picture.sizeInBytes()));
    });
}

int CountPainted(const std::string& title) {
    return WindowServer::Ask([&] {
        QWidget* const window = WindowTitled(title);
        if (window == nullptr) return 0;
        const QImage picture = window->grab().toImage();
        const QRgb sky = picture.pixel(picture.rect().center() / 2 + QPoint(0, 40));
        int count = 0;
        for (int y = 0; y < picture.height(); y++)
            for (int x = 0; x < picture.width(); x++)
                count += picture.pixel(x, y) == sky ? 0 : 1;
        return count;
    });
}

}  // namespace MenuHand
