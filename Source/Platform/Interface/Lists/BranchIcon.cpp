#include "Platform/Interface/Lists/BranchIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace {

class BranchIconEngine : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State /*state*/) override {
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::Text;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / 16.0, rect.height() / 16.0);
        painter->setPen(QPen(QGuiApplication::palette().color(role), 1.5));
        QPainterPath path(QPointF(5.0, 1.0));
        path.lineTo(5.0, 5.0);
        path.quadTo(5.0, 9.5, 9.0, 9.5);
        painter->drawPath(path);
        painter->drawEllipse(QPointF(11.0, 9.5), 2.0, 2.0);
        painter->restore();
    }
    [[nodiscard]] QIconEngine* clone() const override { return new BranchIconEngine; }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
};

}  // namespace

QIcon MakeBranchIcon() {
    return QIcon(new BranchIconEngine);
}
