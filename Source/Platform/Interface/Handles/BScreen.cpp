#include "Platform/Interface/Handles/BScreen.h"

#include <QGuiApplication>
#include <QScreen>
#include <tuple>
#include <utility>

#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/WindowPart.h"
#include "Platform/Interface/Server/WindowServer.h"

BScreen::BScreen(const BWindow* window) {
    const auto part = window == nullptr ? nullptr : window->Part();
    const auto toRect = [](const QRect& rect) {
        return BRect{static_cast<float>(rect.left()), static_cast<float>(rect.top()),
                     static_cast<float>(rect.right()), static_cast<float>(rect.bottom())};
    };
    std::tie(frame_, free_) = WindowServer::Ask([part, toRect] {
        const QScreen* screen = QGuiApplication::primaryScreen();
        if (part != nullptr && part->Widget() != nullptr) screen = part->Widget()->screen();
        if (screen == nullptr) return std::pair<BRect, BRect>{};
        return std::pair(toRect(screen->geometry()), toRect(screen->availableGeometry()));
    });
}
