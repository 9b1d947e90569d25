#include "Platform/Interface/Handles/BFont.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetricsF>

#include "Platform/Interface/Server/ViewPart.h"

float BFont::Size() const {
    return WindowServer::Ask(
        [] { return static_cast<float>(QFontInfo(QApplication::font()).pixelSize()); });
}

float BFont::StringWidth(const std::string& text) const {
    return WindowServer::Ask([&text] {
        const QFontMetricsF metrics(QApplication::font());
        return static_cast<float>(metrics.horizontalAdvance(ToText(text)));
    });
}

font_height BFont::Height() const {
    return WindowServer::Ask([] {
        const QFontMetricsF metrics(QApplication::font());
        return font_height{static_cast<float>(metrics.ascent()),
                           static_cast<float>(metrics.descent()),
                           static_cast<float>(metrics.leading())};
    });
}
