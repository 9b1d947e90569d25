#include "Platform/Interface/Handles/BFont.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetricsF>

#include "Platform/Interface/Server/ViewPart.h"

float BFont::Size() const {
    return WindowServer::Ask(
        [] { return static_cast<float>(QFontInfo(QApplication::font()).pixelSize()); });
}

std::vector<float> BFont::StringWidths(const std::vector<std::string>& texts) const {
    return WindowServer::Ask([&texts] {
        const QFontMetricsF metrics(QApplication::font());
        std::vector<float> widths;
        widths.reserve(texts.size());
        for (const std::string& text : texts)
            widths.push_back(static_cast<float>(metrics.horizontalAdvance(ToText(text))));
        return widths;
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
