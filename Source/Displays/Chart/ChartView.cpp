#include "Displays/Chart/ChartView.h"

#include <cmath>

#include "Displays/Base/PictureKeys.h"
#include "Displays/Chart/ChartDisplay.h"
#include "Platform/Interface/Canvas/LineClip.h"

namespace {

constexpr rgb_color kBackground{28, 30, 38, 255};
// A hand that moves less has clicked.
constexpr float kClick = 4.0f;   // pixels
constexpr float kShadow = 2.0f;  // around a text, which its frame has

}  // namespace

ChartView::ChartView(ChartDisplay* display)
    : CanvasView("chart", Anchor::kLeftTop, kBackground), display_(display) {}

bool ChartView::IsEmpty() const {
    const BRect bounds = Bounds();
    return bounds.right < bounds.left || bounds.bottom < bounds.top;
}

// --- Painting ---

void ChartView::Paint(const ChartItems& items) {
    Canvas& canvas = LowerLayer();
    SetBackground(items.background);
    canvas.FillRect({0.0f, 0.0f, items.width, items.height}, items.background);
    for (const ChartItems::Bar& bar : items.bars)
        canvas.FillRect(bar.rect, bar.color);
    canvas.BeginLineArray(0);
    for (const ChartItems::Curve& curve : items.curves)
        for (std::size_t i = 1; i < curve.points.size(); i++)
            canvas.AddLine(curve.points[i - 1], curve.points[i], curve.color);
    canvas.EndLineArray();
    for (const ChartItems::Dot& dot : items.dots)
        if (IsInside(dot.where, items.plot)) canvas.DrawDisc(dot.where, dot.radius, dot.color);
    for (const ChartItems::Bar& bar : items.frame)
        canvas.FillRect(bar.rect, bar.color);
    SyncLayers();
    std::vector<OverlayItem> texts;
    texts.reserve(items.texts.size());
    for (const ChartItems::Text& text : items.texts)
        texts.push_back(OverlayOf(text));
    SetOverlay(std::move(texts));
    Sync();
}

OverlayItem ChartView::OverlayOf(const ChartItems::Text& text) const {
    OverlayItem item;
    item.text = text.text;
    item.color = text.color;
    const BRect frame = FrameOf(item);
    const float width = frame.right - frame.left - 2.0f * kShadow;
    const float height = frame.bottom - frame.top - 2.0f * kShadow;
    using Align = ChartItems::Text::Align;
    const float part = text.align == Align::kLeft     ? 0.0f
                       : text.align == Align::kMiddle ? 0.5f
                                                      : 1.0f;
    item.where = {std::round(text.where.x - part * width),
                  std::round(text.where.y - height / 2.0f)};
    return item;
}

void ChartView::Describe(const std::string& said) {
    if (said == said_) return;
    said_ = said;
    SetAccessibleDescription(said_.c_str());
}

void ChartView::FrameResized(BRect /*bounds*/) {
    if (display_ != nullptr) display_->Repaint();
}

// --- What the user does ---

void ChartView::MouseDown(const MouseInput& input) {
    if ((input.buttons & B_PRIMARY_MOUSE_BUTTON) == 0) return;
    isHeld_ = true;
    isClick_ = true;
    grabbed_ = input.inView;
    SetPointer(Pointer::kClosedHand);
}

void ChartView::MouseUp(const MouseInput& input) {
    if (!isHeld_ || (input.buttons & B_PRIMARY_MOUSE_BUTTON) != 0) return;
    isHeld_ = false;
    SetPointer(Pointer::kArrow);
    if (isClick_ && display_ != nullptr) display_->ShowMomentAt(input.where);
}

void ChartView::MouseMoved(const MouseInput& input, Transit /*transit*/) {
    if (!isHeld_ || display_ == nullptr) return;
    const BPoint way{input.inView.x - grabbed_.x, input.inView.y - grabbed_.y};
    if (isClick_ && std::abs(way.x) + std::abs(way.y) < kClick) return;
    isClick_ = false;
    grabbed_ = input.inView;
    display_->PanBy(-way.x, -way.y);
}

void ChartView::WheelTurned(const WheelInput& input) {
    if (input.stepsY != 0.0f && display_ != nullptr)
        display_->ZoomAbout(input.where, PictureKeys::ZoomOf(input));
}

void ChartView::Pinched(const PinchInput& input) {
    if (display_ != nullptr) display_->ZoomAbout(input.where, static_cast<double>(input.factor));
}

void ChartView::KeyDown(const KeyInput& input) {
    if (display_ == nullptr) return;
    constexpr float kStep = PictureKeys::kPanStep;
    if (const auto arrow = PictureKeys::ArrowOf(input))
        return display_->PanBy(kStep * arrow->x, kStep * arrow->y);
    if (const auto zoom = PictureKeys::ZoomOf(input)) return display_->Zoom(*zoom, *zoom);
    constexpr double kZoom = PictureKeys::kZoomStep;
    switch (input.key) {
        case 'x':
            return display_->Zoom(kZoom, 1.0);
        case 'X':
            return display_->Zoom(1.0 / kZoom, 1.0);
        case 'y':
            return display_->Zoom(1.0, kZoom);
        case 'Y':
            return display_->Zoom(1.0, 1.0 / kZoom);
        default:
            display_->TakeTimeKey(input);
    }
}
