// The windows of the program that a user sees, and what can be used in them. On the window server's
// thread.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "Platform/Interface/Server/Mnemonics.h"

using Windows = std::vector<QWidget*>;

// Those that take input, without popups.
[[nodiscard]] Windows VisibleWindows();
[[nodiscard]] std::size_t CountSimulations(const Windows& windows);
[[nodiscard]] bool IsSimulation(const QWidget* window);
[[nodiscard]] bool IsQuestion(const QWidget* window);
// One that the toolkit has made, with everything in it.
[[nodiscard]] bool IsToolkitDialog(const QWidget* window);
[[nodiscard]] bool CanBeUsed(const QWidget* widget);

// Of an item or a button, without the marks of its keys.
template <typename Labelled>
std::string TextOf(const Labelled& labelled) {
    return WithoutMark(labelled.text()).toStdString();
}

// All of a kind in the program's own windows.
template <typename Widget>
std::vector<Widget*> FindUsable(const Windows& windows) {
    std::vector<Widget*> found;
    for (const QWidget* const window : windows) {
        if (IsToolkitDialog(window)) continue;
        for (Widget* const widget : window->findChildren<Widget*>())
            if (CanBeUsed(widget) && widget->window() == window) found.push_back(widget);
    }
    return found;
}
