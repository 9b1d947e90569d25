#include "Platform/Interface/Handles/BMenuBar.h"

#include <QMenuBar>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionMenuItem>
#include <algorithm>

#include "Platform/Interface/Server/ViewPart.h"

namespace {

// A menu with an icon keeps it while it is open; some styles would write its name over it then.
class IconStyle : public QProxyStyle {
public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element != CE_MenuBarItem || item == nullptr || item->icon.isNull())
            return QProxyStyle::drawControl(element, option, painter, widget);
        QStyleOptionMenuItem nameless = *item;
        nameless.text.clear();
        nameless.icon = {};
        QProxyStyle::drawControl(element, &nameless, painter, widget);
        // Of the icon's pictures the smallest has its size; others are finer.
        const QList<QSize> sizes = item->icon.availableSizes();
        const QSize size =
            *std::min_element(sizes.begin(), sizes.end(),
                              [](const QSize& a, const QSize& b) { return a.width() < b.width(); });
        item->icon.paint(painter,
                         QStyle::alignedRect(item->direction, Qt::AlignCenter, size,
                                             QRect(item->rect).adjusted(0, 0, 0, -2)),
                         Qt::AlignCenter,
                         item->state.testFlag(State_Enabled) ? QIcon::Normal : QIcon::Disabled);
    }
};

class MenuBarPart : public ViewPart {
protected:
    QWidget* Make() override {
        auto* const bar = new QMenuBar;
        auto* const style = new IconStyle;
        style->setParent(bar);
        bar->setStyle(style);
        return bar;
    }
};

}  // namespace

BMenuBar::BMenuBar(const char* name) : BMenu(name, std::make_shared<MenuBarPart>()) {}
