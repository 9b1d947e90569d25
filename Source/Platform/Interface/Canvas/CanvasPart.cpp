#include "Platform/Interface/Canvas/CanvasPart.h"

#include <QPaintEvent>
#include <QPainter>
#include <QRegion>
#include <cmath>

#include "Platform/Interface/Canvas/CanvasSurface.h"
#include "Platform/Interface/Canvas/OverlayPainter.h"
#include "Platform/Interface/Canvas/PixelImage.h"

namespace {

// Beyond so many pieces one rectangle around them is quicker to paint.
constexpr std::size_t kMaxRects = 64;

QRect ToQtRect(const IntRect& rect) {
    return {rect.left, rect.top, rect.Width(), rect.Height()};
}

IntRect DeviceBox(const QRectF& box, double scale) {
    return {static_cast<int32>(std::floor(box.left() * scale)),
            static_cast<int32>(std::floor(box.top() * scale)),
            static_cast<int32>(std::ceil(box.right() * scale)),
            static_cast<int32>(std::ceil(box.bottom() * scale))};
}

}  // namespace

CanvasPart::CanvasPart(CanvasView::Anchor anchor, rgb_color background)
    : anchor_(anchor), background_(background) {}

// --- Place ---

CanvasPart::Place CanvasPart::GetPlace() const {
    const std::lock_guard lock(placeMutex_);
    return place_;
}

void CanvasPart::SetAnchorPoint(BPoint point) {
    const std::lock_guard lock(placeMutex_);
    place_.anchorPoint = point;
}

void CanvasPart::SetSize(double width, double height, double scale) {
    const std::lock_guard lock(placeMutex_);
    place_.width = width;
    place_.height = height;
    place_.scale = scale;
}

IntRect CanvasPart::DeviceArea(const Place& place) const {
    const bool isCentered = anchor_ == CanvasView::Anchor::kCenter;
    const double left = place.anchorPoint.x - (isCentered ? std::floor(place.width / 2) : 0.0);
    const double top = place.anchorPoint.y - (isCentered ? std::floor(place.height / 2) : 0.0);
    const auto x = static_cast<int32>(std::lround(left * place.scale));
    const auto y = static_cast<int32>(std::lround(top * place.scale));
    return {x, y, x + static_cast<int32>(std::ceil(place.width * place.scale)),
            y + static_cast<int32>(std::ceil(place.height * place.scale))};
}

BRect CanvasPart::Bounds(const Place& place) const {
    const IntRect area = DeviceArea(place);
    const auto left = static_cast<float>(area.left / place.scale);
    const auto top = static_cast<float>(area.top / place.scale);
    return {left, top, left + static_cast<float>(place.width) - 1.0f,
            top + static_cast<float>(place.height) - 1.0f};
}

BPoint CanvasPart::ToCanvas(QPointF point) const {
    const BRect bounds = Bounds(GetPlace());
    return {bounds.left + static_cast<float>(point.x()) - 0.5f,
            bounds.top + static_cast<float>(point.y()) - 0.5f};
}

// --- Pictures ---

void CanvasPart::Publish(const Canvas& picture, const std::vector<OverlayItem>& overlay) {
    const Place place = GetPlace();
    const IntRect area = DeviceArea(place);
    if (area.IsEmpty() || picture.Scale() != place.scale) return;
    const IntPoint toFront{picture.Origin().x - area.left, picture.Origin().y - area.top};
    const std::lock_guard lock(frontMutex_);
    const bool isSamePlace = frontOrigin_ == IntPoint{area.left, area.top} &&
                             front_.Width() == area.Width() && front_.Height() == area.Height() &&
                             frontScale_ == place.scale;
    background_ = picture.Background();
    if (isSamePlace) {
        for (const IntRect& rect : picture.Damage().Rects()) {
            const IntRect to = rect.MovedBy(toFront);
            front_.Copy(picture.Pixels(), rect, {to.left, to.top});
            pending_.Add(to);
        }
    } else {
        front_ = PixelBuffer(area.Width(), area.Height(), ToPixel(background_));
        front_.Copy(picture.Pixels(), picture.Pixels().Bounds(), toFront);
        frontOrigin_ = {area.left, area.top};
        frontScale_ = place.scale;
        pending_ = DamageMap(area.Width(), area.Height());
        pending_.AddAll();
    }
    if (overlay != overlay_) {
        const QSizeF size(place.width, place.height);
        const BRect bounds = Bounds(place);
        const auto damage = [&](const std::vector<OverlayItem>& items) {
            for (const OverlayItem& item : items)
                pending_.Add(
                    DeviceBox(OverlayBox(item, size, {bounds.left, bounds.top}), place.scale));
        };
        damage(overlay_);
        damage(overlay);
        overlay_ = overlay;
    }
    hasUnpaintedFrame_ = true;
    if (isUpdateQueued_) return;
    isUpdateQueued_ = WindowServer::Queue([part = shared_from_this(), this] { UpdateWidget(); });
}

void CanvasPart::UpdateWidget() {
    std::vector<IntRect> rects;
    double scale = 1.0;
    {
        const std::lock_guard lock(frontMutex_);
        isUpdateQueued_ = false;
        rects = pending_.Rects();
        pending_.Clear();
        scale = frontScale_;
    }
    if (Widget() == nullptr || rects.empty()) return;
    QRegion region;
    for (const IntRect& rect : rects) {
        const QRectF box(rect.left / scale, rect.top / scale, rect.Width() / scale,
                         rect.Height() / scale);
        region += box.toAlignedRect();
    }
    Widget()->update(rects.size() > kMaxRects ? QRegion(region.boundingRect()) : region);
}

void CanvasPart::Paint(QWidget* surface, const QPaintEvent& event) {
    const Place place = GetPlace();
    const IntRect area = DeviceArea(place);
    const BRect bounds = Bounds(place);
    QPainter painter(surface);
    const std::lock_guard lock(frontMutex_);
    // In device pixels, so that pixels are copied and not scaled. What the front buffer does not
    // cover, because the view was just resized or scrolled, is background for the moment.
    painter.save();
    painter.scale(1.0 / place.scale, 1.0 / place.scale);
    const QImage image = AsImage(front_, 1.0);
    const bool isShown = frontScale_ == place.scale && !front_.Bounds().IsEmpty();
    const QPoint at(frontOrigin_.x - area.left, frontOrigin_.y - area.top);
    const QRect covered = isShown ? QRect(at, image.size()) : QRect();
    const QColor background(background_.red, background_.green, background_.blue);
    for (const QRect& part : event.region()) {
        const QRect box = ToQtRect(DeviceBox(QRectF(part), place.scale));
        const QRect inside = box & covered;
        if (!inside.isEmpty()) painter.drawImage(inside.topLeft(), image, inside.translated(-at));
        if (inside == box) continue;
        for (const QRect& outside : QRegion(box) - QRegion(inside))
            painter.fillRect(outside, background);
    }
    painter.restore();
    PaintOverlay(&painter, overlay_, QSizeF(place.width, place.height), {bounds.left, bounds.top});
    if (std::exchange(hasUnpaintedFrame_, false)) shown_++;
}

// --- Widget and input ---

QWidget* CanvasPart::Make() {
    return new Surface(*this);
}

void CanvasPart::SetHandle(const BMessenger& handle) {
    ViewPart::SetHandle(handle);
    if (input_.ForgetTold()) Tell(BMessage(kViewChanged));
}

void CanvasPart::Put(const InputEvent& event) {
    if (input_.Put(event)) Tell(BMessage(kViewChanged));
}

void CanvasPart::SizeChanged(const QWidget& surface) {
    SetSize(surface.width(), surface.height(), surface.devicePixelRatioF());
    Put(ResizeEvent{});
}
