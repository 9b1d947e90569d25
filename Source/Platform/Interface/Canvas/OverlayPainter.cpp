#include "Platform/Interface/Canvas/OverlayPainter.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>

namespace {

constexpr double kTick = 6.0;     // height of a bar's ends
constexpr double kMargin = 2.0;   // around a box, for the shadow
constexpr double kBarLine = 1.5;  // thickness
constexpr double kRingLine = 1.2;
constexpr int kRingOpacity = 150;  // of 255: it is less than what it stands for
constexpr double kLineWidth = 1.5;
constexpr double kFarAway = 1e5;  // pixels; nothing beyond is seen

bool IsLine(const OverlayItem& item) {
    return item.kind == OverlayItem::Kind::kLine || item.kind == OverlayItem::Kind::kDashes;
}

QPolygonF PointsOf(const OverlayItem& item, BPoint leftTop) {
    QPolygonF points;
    points.reserve(static_cast<qsizetype>(item.points.size()));
    const auto tame = [](float value) {
        return std::clamp(static_cast<double>(value), -kFarAway, kFarAway);
    };
    for (const BPoint point : item.points)
        points << QPointF(tame(point.x - leftTop.x) + 0.5, tame(point.y - leftTop.y) + 0.5);
    return points;
}

// The item without its margin; a bar's line lies at the bottom.
QRectF ItemBox(const OverlayItem& item, QSizeF viewSize, BPoint leftTop) {
    if (IsLine(item)) return PointsOf(item, leftTop).boundingRect();
    const QFontMetricsF metrics(QGuiApplication::font());
    QSizeF size(metrics.horizontalAdvance(QString::fromStdString(item.text)), metrics.height());
    if (item.kind == OverlayItem::Kind::kBar) {
        if (item.text.empty()) size.setHeight(0.0);
        size =
            QSizeF(std::max(size.width(), static_cast<double>(item.length)), size.height() + kTick);
    }
    const double x = item.where.x;
    const double y = item.where.y;
    const double fromRight = viewSize.width() - x - size.width();
    const double fromBottom = viewSize.height() - y - size.height();
    switch (item.anchor) {
        case OverlayItem::Anchor::kLeftTop:
            return {QPointF(x, y), size};
        case OverlayItem::Anchor::kRightTop:
            return {QPointF(fromRight, y), size};
        case OverlayItem::Anchor::kLeftBottom:
            return {QPointF(x, fromBottom), size};
        case OverlayItem::Anchor::kRightBottom:
            return {QPointF(fromRight, fromBottom), size};
        default:
            break;
    }
    if (item.kind == OverlayItem::Kind::kRing) {
        const double across = item.length + kRingLine;
        return {x - leftTop.x + 0.5 - across / 2.0, y - leftTop.y + 0.5 - across / 2.0, across,
                across};
    }
    // The point is the centre of its pixel.
    return {QPointF(x - leftTop.x + 0.5, y - leftTop.y + 0.5 - size.height()), size};
}

void DrawShadowed(QPainter* painter, const QRectF& box, const QString& text, const QColor& color) {
    // Dark texts stand on something light.
    const int shadow = color.lightness() < 128 ? 255 : 0;
    painter->setPen(QColor(shadow, shadow, shadow, 170));
    painter->drawText(box.translated(1.0, 1.0), Qt::AlignHCenter | Qt::AlignTop, text);
    painter->setPen(color);
    painter->drawText(box, Qt::AlignHCenter | Qt::AlignTop, text);
}

void DrawBar(QPainter* painter, const QRectF& box, double length, const QColor& color) {
    const double left = box.center().x() - length / 2;
    const double right = left + length;
    const double middle = box.bottom() - kTick / 2;
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(color, kBarLine));
    painter->drawLine(QPointF(left, middle), QPointF(right, middle));
    painter->drawLine(QPointF(left, middle - kTick / 2), QPointF(left, middle + kTick / 2));
    painter->drawLine(QPointF(right, middle - kTick / 2), QPointF(right, middle + kTick / 2));
}

void DrawRing(QPainter* painter, const QRectF& box, QColor color) {
    color.setAlpha(kRingOpacity);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(color, kRingLine));
    painter->setBrush(Qt::NoBrush);
    const double inset = kRingLine / 2.0;
    painter->drawEllipse(box.adjusted(inset, inset, -inset, -inset));
}

void DrawLine(QPainter* painter, const OverlayItem& item, BPoint leftTop, const QColor& color) {
    QPen pen(color, kLineWidth);
    if (item.kind == OverlayItem::Kind::kDashes) pen.setDashPattern({4.0, 3.0});
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(pen);
    painter->drawPolyline(PointsOf(item, leftTop));
}

}  // namespace

void PaintOverlay(QPainter* painter, const std::vector<OverlayItem>& items, QSizeF viewSize,
                  BPoint leftTop) {
    if (qGuiApp == nullptr) return;
    painter->setFont(QGuiApplication::font());
    for (const OverlayItem& item : items) {
        const QRectF box = ItemBox(item, viewSize, leftTop);
        const QColor color(item.color.red, item.color.green, item.color.blue);
        if (item.kind == OverlayItem::Kind::kBar)
            DrawBar(painter, box, static_cast<double>(item.length), color);
        if (item.kind == OverlayItem::Kind::kRing) DrawRing(painter, box, color);
        if (IsLine(item)) DrawLine(painter, item, leftTop, color);
        if (!item.text.empty())
            DrawShadowed(painter, box, QString::fromStdString(item.text), color);
    }
}

QRectF OverlayBox(const OverlayItem& item, QSizeF viewSize, BPoint leftTop) {
    if (qGuiApp == nullptr) return {};
    return ItemBox(item, viewSize, leftTop).adjusted(-kMargin, -kMargin, kMargin, kMargin);
}
