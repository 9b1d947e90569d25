#include "Platform/Interface/Canvas/Canvas.h"

#include <cmath>

#include "Platform/Interface/Canvas/LineClip.h"
#include "Platform/Interface/Canvas/PixelImage.h"
#include "Platform/Interface/Canvas/Rasterizer.h"
#include "Platform/Interface/Canvas/StraightRun.h"

namespace {

// Points nearer to a line than this lie on it, in device pixels.
constexpr float kStraight = 1.0f / 8;
// A long slanted line damages much less than the rectangle around it.
constexpr double kDamageStep = 2.0 * DamageMap::kTileSize;
// Further out nothing is drawn, and the sums stay far from the limits of whole numbers.
constexpr double kFarAway = 1e8;

int32 DeviceFloor(double value) {
    return static_cast<int32>(std::floor(std::clamp(value, -kFarAway, kFarAway)));
}

int32 DeviceCeil(double value) {
    return static_cast<int32>(std::ceil(std::clamp(value, -kFarAway, kFarAway)));
}

// The device pixels of a rectangle, counted from the point where coordinates begin.
IntRect DevicePixels(BRect rect, double scale) {
    return {DeviceFloor(rect.left * scale), DeviceFloor(rect.top * scale),
            DeviceCeil((static_cast<double>(rect.right) + 1.0) * scale),
            DeviceCeil((static_cast<double>(rect.bottom) + 1.0) * scale)};
}

bool IsFinite(BPoint point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
}

bool IsSmall(const IntRect& rect) {
    return std::max(rect.Width(), rect.Height()) <= DamageMap::kTileSize;
}

void AddLineDamage(DamageMap* damage, const IntRect& drawn, double x0, double y0, double x1,
                   double y1, double width) {
    const double longer = std::max(drawn.Width(), drawn.Height());
    const int32 pieces = 1 + static_cast<int32>(longer / kDamageStep);
    // Its middle may lie outside the pixels that it touches.
    const IntRect frame = drawn.GrownBy(static_cast<int32>(width) + 2);
    if (pieces == 1 || !ClipLine(frame, &x0, &y0, &x1, &y1)) return damage->Add(drawn);
    const double margin = width / 2 + 1.0;
    for (int32 i = 0; i < pieces; i++) {
        const double from = static_cast<double>(i) / pieces;
        const double to = static_cast<double>(i + 1) / pieces;
        const double ax = x0 + from * (x1 - x0);
        const double ay = y0 + from * (y1 - y0);
        const double bx = x0 + to * (x1 - x0);
        const double by = y0 + to * (y1 - y0);
        damage->Add(
            IntRect{DeviceFloor(std::min(ax, bx) - margin), DeviceFloor(std::min(ay, by) - margin),
                    DeviceCeil(std::max(ax, bx) + margin), DeviceCeil(std::max(ay, by) + margin)});
    }
}

}  // namespace

Canvas::Canvas(BRect bounds, rgb_color background, double scale)
    : bounds_(bounds), background_(background), scale_(scale) {
    const IntRect area = DevicePixels(bounds_, scale_);
    origin_ = {area.left, area.top};
    pixels_ = PixelBuffer(area.Width(), area.Height(), ToPixel(background_));
    damage_ = DamageMap(pixels_.Width(), pixels_.Height());
    damage_.AddAll();
}

void Canvas::SetBounds(BRect bounds) {
    if (bounds == bounds_) return;
    Canvas other(bounds, background_, scale_);
    other.pixels_.TakeOver(pixels_, pixels_.Bounds(),
                           {origin_.x - other.origin_.x, origin_.y - other.origin_.y});
    *this = std::move(other);
}

void Canvas::SetScale(double scale) {
    if (scale == scale_) return;
    Canvas other(bounds_, background_, scale);
    other.pixels_ = ScaledPixels(pixels_, other.pixels_.Width(), other.pixels_.Height());
    *this = std::move(other);
}

double Canvas::DeviceX(float x) const {
    return (static_cast<double>(x) + 0.5) * scale_ - origin_.x;
}

double Canvas::DeviceY(float y) const {
    return (static_cast<double>(y) + 0.5) * scale_ - origin_.y;
}

IntRect Canvas::DeviceRect(BRect rect) const {
    return DevicePixels(rect, scale_).MovedBy({-origin_.x, -origin_.y});
}

void Canvas::BeginLineArray(int32 count) {
    lines_.clear();
    lines_.reserve(static_cast<std::size_t>(std::max(count, 0)));
}

// The first line after `first` that cannot be drawn together with it.
std::size_t Canvas::EndOfRun(std::size_t first) const {
    StraightRun run(lines_[first].from, lines_[first].to, kStraight / static_cast<float>(scale_));
    std::size_t next = first + 1;
    while (next < lines_.size() && lines_[next].from == lines_[next - 1].to &&
           lines_[next].color == lines_[first].color && run.Take(lines_[next].to))
        next++;
    return next;
}

void Canvas::EndLineArray() {
    const double width = std::max(scale_, 1.0);
    Rasterizer rasterizer(pixels_, width);
    Pixel color = kOpaque;
    rasterizer.SetColor(color);
    IntRect damage;  // of short lines near to one another
    for (std::size_t i = 0, end = 0; i < lines_.size(); i = end) {
        end = EndOfRun(i);
        const BPoint from = lines_[i].from;
        const BPoint to = lines_[end - 1].to;
        const double x0 = DeviceX(from.x);
        const double y0 = DeviceY(from.y);
        const double x1 = DeviceX(to.x);
        const double y1 = DeviceY(to.y);
        if (lines_[i].color != color) {
            color = lines_[i].color;
            rasterizer.SetColor(color);
        }
        const IntRect drawn = rasterizer.DrawLine(x0, y0, x1, y1);
        if (drawn.IsEmpty()) continue;
        const IntRect both = Union(damage, drawn);
        if (IsSmall(both)) {
            damage = both;
        } else if (IsSmall(drawn)) {
            damage_.Add(damage);
            damage = drawn;
        } else {
            AddLineDamage(&damage_, drawn, x0, y0, x1, y1, width);
        }
    }
    damage_.Add(damage);
    lines_.clear();
}

void Canvas::Fill(rgb_color color) {
    FillRect(bounds_, color);
}

void Canvas::FillRect(BRect rect, rgb_color color) {
    const IntRect area = DeviceRect(rect);
    pixels_.Fill(area, ToPixel(color));
    damage_.Add(area);
}

void Canvas::DrawDisc(BPoint center, float radius, rgb_color color) {
    if (!IsFinite(center) || !std::isfinite(radius)) return;
    Rasterizer rasterizer(pixels_);
    const double size = std::max(static_cast<double>(radius), 0.5) * scale_;
    rasterizer.SetColor(ToPixel(color));
    damage_.Add(rasterizer.DrawDisc(DeviceX(center.x), DeviceY(center.y), size));
}

void Canvas::CopyFrom(const Canvas& source, BRect rect) {
    const IntRect area = Intersection(DeviceRect(rect), pixels_.Bounds());
    if (area.IsEmpty() || source.scale_ != scale_) return;
    const IntPoint shift{origin_.x - source.origin_.x, origin_.y - source.origin_.y};
    pixels_.Copy(source.pixels_, area.MovedBy(shift), {area.left, area.top});
    damage_.Add(area);
}

void Canvas::CopyFrom(const PixelBuffer& source, BPoint leftTop) {
    const auto toDevice = [this](float at) {
        return static_cast<int32>(std::lround(static_cast<double>(at) * scale_));
    };
    const IntPoint to{toDevice(leftTop.x) - origin_.x, toDevice(leftTop.y) - origin_.y};
    pixels_.Copy(source, source.Bounds(), to);
    damage_.Add(source.Bounds().MovedBy(to));
}

void Canvas::CopyDamageFrom(const Canvas& source) {
    if (source.origin_ != origin_ || source.pixels_.Bounds() != pixels_.Bounds()) return;
    for (const IntRect& area : source.damage_.Rects())
        pixels_.Copy(source.pixels_, area, {area.left, area.top});
    damage_.Add(source.damage_);
}

rgb_color Canvas::PixelAt(BPoint where) const {
    if (!IsFinite(where)) return background_;
    const int32 x = DeviceFloor(DeviceX(where.x));
    const int32 y = DeviceFloor(DeviceY(where.y));
    if (x < 0 || y < 0 || x >= pixels_.Width() || y >= pixels_.Height()) return background_;
    return ToColor(pixels_.Row(y)[x]);
}
