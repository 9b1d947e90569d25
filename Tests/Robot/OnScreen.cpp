#include "OnScreen.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMenuBar>
#include <algorithm>

#include "Mnemonics.h"

Windows VisibleWindows() {
    Windows windows;
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (CanBeUsed(window) && window->windowType() != Qt::Popup &&
            window->windowType() != Qt::ToolTip)
            windows.push_back(window);
    return windows;
}

bool IsSimulation(const QWidget* window) {
    return window->findChild<QMenuBar*>() != nullptr &&
           !window->windowTitle().startsWith("Projection of ") &&
           !window->windowTitle().startsWith("Epochs for ");
}

std::size_t CountSimulations(const Windows& windows) {
    return static_cast<std::size_t>(std::count_if(windows.begin(), windows.end(), IsSimulation));
}

bool IsQuestion(const QWidget* window) {
    return window->windowTitle().startsWith("Orvek (") ||
           window->windowTitle() == "Recovered Simulation" ||
           window->windowTitle() == "About Orvek";
}

bool IsToolkitDialog(const QWidget* window) {
    return qobject_cast<const QDialog*>(window) != nullptr;
}

bool CanBeUsed(const QWidget* widget) {
    return widget->isVisible() && widget->isEnabled();
}

std::string TextOf(const QAction& item) {
    return WithoutMark(item.text()).toStdString();
}

std::string TextOf(const QAbstractButton& button) {
    return WithoutMark(button.text()).toStdString();
}
