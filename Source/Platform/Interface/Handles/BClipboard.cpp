#include "Platform/Interface/Handles/BClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "Platform/Interface/Server/WindowServer.h"

void BClipboard::SetText(const std::string& text) {
    WindowServer::Queue(
        [text] { QGuiApplication::clipboard()->setText(QString::fromStdString(text)); });
}

std::string BClipboard::Text() {
    return WindowServer::Ask([] { return QGuiApplication::clipboard()->text().toStdString(); });
}
