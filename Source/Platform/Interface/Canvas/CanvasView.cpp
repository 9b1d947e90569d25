#include "Platform/Interface/Canvas/CanvasView.h"

#include <QImage>
#include <QPainter>
#include <QWidget>
#include <algorithm>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Canvas/CanvasPart.h"
#include "Platform/Interface/Canvas/OverlayPainter.h"
#include "Platform/Interface/Canvas/PixelImage.h"

namespace {

// The canvas grows by so much more than it must, so that it need not grow at every step of a
// resize.
constexpr float kSlack = 128.0f;

bool Contains(BRect outer, BRect inner) {
    return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
           outer.bottom >= inner.bottom;
}

BRect Grown(BRect rect, float by) {
    return {rect.left - by, rect.top - by, rect.right + by, rect.bottom + by};
}

BRect Union(BRect a, BRect b) {
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

BRect Common(BRect a, BRect b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

Qt::CursorShape ToShape(CanvasView::Pointer pointer) {
    switch (pointer) {
        case CanvasView::Pointer::kOpenHand:
            return Qt::OpenHandCursor;
        case CanvasView::Pointer::kClosedHand:
            return Qt::ClosedHandCursor;
        case CanvasView::Pointer::kCrosshair:
            return Qt::CrossCursor;
        default:
            return Qt::ArrowCursor;
    }
}

}  // namespace

CanvasView::CanvasView(const char* name, Anchor anchor, rgb_color background)
    : BView(name, std::make_shared<CanvasPart>(anchor, background)),
      canvas_(BRect{}, background),
      picture_(BRect{}, background) {}

CanvasView::~CanvasView() = default;

CanvasPart& CanvasView::CanvasServer() const {
    return static_cast<CanvasPart&>(*Part());
}

// --- What is shown ---

BRect CanvasView::Bounds() const {
    const CanvasPart& part = CanvasServer();
    return part.Bounds(part.GetPlace());
}

void CanvasView::ScrollTo(BPoint anchorPoint) {
    CanvasServer().SetAnchorPoint(anchorPoint);
    CoverBounds();
}

BPoint CanvasView::AnchorPoint() const {
    return CanvasServer().GetPlace().anchorPoint;
}

void CanvasView::ResizeTo(float width, float height, double scale) {
    CanvasServer().SetSize(static_cast<double>(width) + 1.0, static_cast<double>(height) + 1.0,
                           scale);
    CoverBounds();
}

void CanvasView::CoverBounds() {
    const double scale = CanvasServer().GetPlace().scale;
    const BRect shown = Bounds();
    const BRect before = canvas_.Bounds();
    const bool isCovered = shown.right < shown.left || Contains(before, shown);
    if (isCovered && canvas_.Scale() == scale) return;
    // Both layers change alike: what was the same in them still is.
    const bool wasDamaged = !canvas_.Damage().IsEmpty();
    canvas_.SetScale(scale);
    picture_.SetScale(scale);
    if (!isCovered) Grow(shown);
    if (!wasDamaged) canvas_.ClearDamage();
}

void CanvasView::Grow(BRect shown) {
    const BRect before = canvas_.Bounds();
    const bool isFirst = before.right < before.left;
    const BRect bounds =
        isFirst ? shown : Common(Union(before, Grown(shown, kSlack)), Grown(shown, kMaxReach));
    canvas_.SetBounds(bounds);
    picture_.SetBounds(bounds);
}

// --- Drawing ---

void CanvasView::SetBackground(rgb_color background) {
    canvas_.SetBackground(background);
    picture_.SetBackground(background);
}

void CanvasView::SyncLayers() {
    picture_.CopyDamageFrom(canvas_);
    canvas_.ClearDamage();
}

void CanvasView::Erase() {
    canvas_.Fill(Background());
    SyncLayers();
}

void CanvasView::SetOverlay(std::vector<OverlayItem> items) {
    overlay_ = std::move(items);
}

BRect CanvasView::FrameOf(const OverlayItem& item) const {
    const CanvasPart::Place place = CanvasServer().GetPlace();
    const BRect bounds = CanvasServer().Bounds(place);
    const QRectF box =
        OverlayBox(item, QSizeF(place.width, place.height), {bounds.left, bounds.top});
    if (box.isNull()) return {};
    // The view's edges lie half a pixel from the centres of the pixels along them.
    const auto x = [&](double edge) { return bounds.left + static_cast<float>(edge) - 0.5f; };
    const auto y = [&](double edge) { return bounds.top + static_cast<float>(edge) - 0.5f; };
    return {x(box.left()), y(box.top()), x(box.right()), y(box.bottom())};
}

void CanvasView::Sync() {
    CanvasServer().Publish(picture_, overlay_);
    picture_.ClearDamage();
}

int64 CanvasView::CountShown() const {
    return CanvasServer().CountShown();
}

std::vector<std::byte> CanvasView::EncodePNG(bool withOverlay) const {
    const CanvasPart& part = CanvasServer();
    const CanvasPart::Place place = part.GetPlace();
    const IntRect area = part.DeviceArea(place);
    if (area.IsEmpty()) return {};
    PixelBuffer pixels(area.Width(), area.Height(), ToPixel(Background()));
    pixels.Copy(picture_.Pixels(), picture_.Pixels().Bounds(),
                {picture_.Origin().x - area.left, picture_.Origin().y - area.top});
    if (withOverlay && !overlay_.empty()) {
        QImage image = AsImage(&pixels, place.scale);
        QPainter painter(&image);
        const BRect bounds = part.Bounds(place);
        PaintOverlay(&painter, overlay_, QSizeF(place.width, place.height),
                     {bounds.left, bounds.top});
    }
    return ::EncodePNG(pixels);
}

void CanvasView::SetPointer(Pointer pointer) {
    ChangeWidget<QWidget>(Part(),
                          [shape = ToShape(pointer)](QWidget& widget) { widget.setCursor(shape); });
}

// --- Input ---

void CanvasView::Changed(const BMessage& /*message*/) {
    HandleInput();
}

void CanvasView::HandleInput() {
    const auto mouse = [this](const MouseEvent& event) {
        switch (event.kind) {
            case MouseEvent::Kind::kDown:
                return MouseDown(event.input);
            case MouseEvent::Kind::kUp:
                return MouseUp(event.input);
            case MouseEvent::Kind::kEntered:
                return MouseMoved(event.input, Transit::kEntered);
            case MouseEvent::Kind::kExited:
                return MouseMoved(event.input, Transit::kExited);
            default:
                return MouseMoved(event.input, Transit::kInside);
        }
    };
    for (const InputEvent& event : CanvasServer().TakeInput()) {
        if (const auto* const moved = std::get_if<MouseEvent>(&event)) {
            mouse(*moved);
        } else if (const auto* const wheel = std::get_if<WheelInput>(&event)) {
            WheelTurned(*wheel);
        } else if (const auto* const pinch = std::get_if<PinchInput>(&event)) {
            Pinched(*pinch);
        } else if (const auto* const key = std::get_if<KeyInput>(&event)) {
            if (key->isReleased)
                KeyUp(*key);
            else
                KeyDown(*key);
        } else {
            CoverBounds();
            FrameResized(Bounds());
            Sync();
        }
    }
}

void CanvasView::MouseDown(const MouseInput& /*input*/) {}

void CanvasView::MouseUp(const MouseInput& /*input*/) {}

void CanvasView::MouseMoved(const MouseInput& /*input*/, Transit /*transit*/) {}

void CanvasView::WheelTurned(const WheelInput& /*input*/) {}

void CanvasView::Pinched(const PinchInput& /*input*/) {}

void CanvasView::KeyDown(const KeyInput& /*input*/) {}

void CanvasView::KeyUp(const KeyInput& /*input*/) {}

void CanvasView::FrameResized(BRect /*bounds*/) {}
