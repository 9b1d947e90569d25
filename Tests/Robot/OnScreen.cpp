#include "Tests/Robot/OnScreen.h"

#include <QApplication>
#include <QDialog>
#include <QMenuBar>
#include <algorithm>

Windows VisibleWindows() {
    Windows windows;
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (CanBeUsed(window) && window->windowType() != Qt::Popup &&
            window->windowType() != Qt::ToolTip)
            windows.push_back(window);
    return windows;
}

std::size_t CountSimulations(const Windows& windows) {
    return static_cast<std::size_t>(std::count_if(windows.begin(), windows.end(), IsSimulation));
}

bool IsSimulation(const QWidget* window) {
    return window->findChild<QMenuBar*>() != nullptr &&
           !window->windowTitle().startsWith("Projection of ") &&
           !window->windowTitle().startsWith("Epochs for ");
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
