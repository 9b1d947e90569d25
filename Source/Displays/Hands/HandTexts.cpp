#include "Displays/Hands/HandTexts.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Resources/Hands.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr float kHeadLength = 7.0f;  // of an arrow, as the next ones in pixels
constexpr float kRingGap = 4.0f;
constexpr float kGhost = 10.0f;  // across the ring that stands for the body where it would be
constexpr BPoint kReadoutAt{14.0f, -8.0f};  // from the pointer
constexpr int kDigits = 6;
constexpr rgb_color kHeldColor{255, 200, 90, 255};
constexpr rgb_color kDangerColor{255, 110, 90, 255};

OverlayItem MakeText(BPoint where, std::string text, rgb_color color) {
    OverlayItem item;
    item.anchor = OverlayItem::Anchor::kCanvas;
    item.where = {std::floor(where.x), std::floor(where.y)};
    item.text = std::move(text);
    item.color = color;
    return item;
}

OverlayItem MakeLine(OverlayItem::Kind kind, std::vector<BPoint> points, rgb_color color) {
    OverlayItem item;
    item.kind = kind;
    item.anchor = OverlayItem::Anchor::kCanvas;
    item.points = std::move(points);
    item.color = color;
    return item;
}

// Moved to where all of it is seen.
void PutInView(const CanvasView& view, OverlayItem* text) {
    const BRect bounds = view.Bounds();
    const BRect frame = view.FrameOf(*text);
    if (frame.right > bounds.right) text->where.x -= std::ceil(frame.right - bounds.right);
    if (frame.top < bounds.top) text->where.y += std::ceil(bounds.top - frame.top);
}

std::string VectorText(const ThreeVector& vector, double uval, const UnitTable& units,
                       const DisplayContext& context) {
    const auto number = [&](double value) { return print_double(value / uval, kDigits); };
    return FillIn(context.texts->Label(kTextHandVector),
                  {number(vector.x), number(vector.y), number(vector.z), units.Abbreviation(uval)});
}

}  // namespace

void AddArrow(BPoint from, BPoint to, rgb_color color, std::vector<OverlayItem>* items) {
    const float dx = to.x - from.x;
    const float dy = to.y - from.y;
    const float length = std::hypot(dx, dy);
    if (!(length > 0.0f) || !std::isfinite(length)) return;
    const float x = kHeadLength * dx / length;
    const float y = kHeadLength * dy / length;
    items->push_back(MakeLine(OverlayItem::Kind::kLine, {from, to}, color));
    items->push_back(MakeLine(
        OverlayItem::Kind::kLine,
        {{to.x - x - y / 2, to.y - y + x / 2}, to, {to.x - x + y / 2, to.y - y - x / 2}}, color));
}

void AddRing(BPoint center, float radius, rgb_color color, std::vector<OverlayItem>* items) {
    OverlayItem ring;
    ring.kind = OverlayItem::Kind::kRing;
    ring.anchor = OverlayItem::Anchor::kCanvas;
    ring.where = center;
    ring.length = 2.0f * (radius + kRingGap);
    ring.color = color;
    items->push_back(std::move(ring));
}

void AddGrip(const BodyGrip& grip, const HandSight& sight, BPoint pointer, const CanvasView& view,
             const DisplayContext& context, std::vector<OverlayItem>* items) {
    const HandBody& body = grip.Body();
    const ThreeVector place = body.position - grip.System().origin;
    if (const auto at = sight.PointOf(place)) {
        AddRing(*at, kGhost / 2 - kRingGap, kHeldColor, items);
        const BPoint way = grip.Arrow();
        if (grip.GetKind() != BodyGrip::Kind::kMove)
            AddArrow(*at, {at->x + way.x, at->y + way.y}, kHeldColor, items);
    }
    const std::string text =
        grip.GetKind() == BodyGrip::Kind::kMove
            ? VectorText(place, body.positionUval, *context.distanceUnits, context)
            : VectorText(body.velocity - grip.System().drift, body.speedUval, *context.speedUnits,
                         context);
    OverlayItem readout =
        MakeText({pointer.x + kReadoutAt.x, pointer.y + kReadoutAt.y}, text, sight.TextColor());
    PutInView(view, &readout);
    items->push_back(std::move(readout));
}

void AddMeasuredLine(BPoint from, BPoint to, const std::string& text, const CanvasView& view,
                     rgb_color color, std::vector<OverlayItem>* items) {
    if (!std::isfinite(from.x + from.y + to.x + to.y)) return;
    items->push_back(MakeLine(OverlayItem::Kind::kLine, {from, to}, color));
    // The middle of what is seen of it.
    const BRect bounds = view.Bounds();
    const auto clamped = [&bounds](BPoint at) {
        return BPoint{std::clamp(at.x, bounds.left, bounds.right),
                      std::clamp(at.y, bounds.top, bounds.bottom)};
    };
    const BPoint start = clamped(from);
    const BPoint end = clamped(to);
    OverlayItem item = MakeText(
        {(start.x + end.x) / 2 + kReadoutAt.x / 2, (start.y + end.y) / 2 + kReadoutAt.y / 2}, text,
        color);
    PutInView(view, &item);
    items->push_back(std::move(item));
}

void AddPath(const OrbitPreview::Path& path, const HandSight& sight, const CanvasView& view,
             const DisplayContext& context, std::vector<OverlayItem>* items) {
    std::vector<BPoint> points;
    const auto addLine = [&] {
        if (points.size() > 1)
            items->push_back(MakeLine(OverlayItem::Kind::kDashes, points, kHeldColor));
        points.clear();
    };
    for (const ThreeVector& place : path.places) {
        if (const auto point = sight.PointOf(place); point)
            points.push_back(*point);
        else
            addLine();
    }
    const bool hasEnd = path.hits.has_value() && !points.empty();
    const BPoint end = hasEnd ? points.back() : BPoint{};
    addLine();
    if (!hasEnd) return;
    AddRing(end, kRingGap, kDangerColor, items);
    OverlayItem text =
        MakeText({end.x + kReadoutAt.x, end.y - kReadoutAt.y},
                 FillIn(context.texts->Label(kTextHandCollides), {*path.hits}), kDangerColor);
    PutInView(view, &text);
    items->push_back(std::move(text));
}
