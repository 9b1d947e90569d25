#include "Displays/Space/SpaceTexts.h"

#include <algorithm>
#include <cmath>

#include "Displays/Projection/PictureTexts.h"
#include "Displays/Projection/TakenFrames.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Interface/Canvas/CanvasView.h"

namespace {

constexpr std::size_t kMaxNames = 200;  // more are not readable
constexpr float kNameGap = 3.0f;
constexpr int kDigits = 6;

// Adds texts where there is room.
class TextPlaces {
public:
    TextPlaces(const CanvasView& view, double scale)
        : view_(view), bounds_(view.Bounds()), scale_(scale) {}

    // The view's point of a device pixel.
    [[nodiscard]] BPoint ToView(SpaceMap::Point point) const {
        return {bounds_.left + static_cast<float>(point.x / scale_) - 0.5f,
                bounds_.top + static_cast<float>(point.y / scale_) - 0.5f};
    }
    [[nodiscard]] bool IsSeen(BPoint point) const {
        return point.x >= bounds_.left && point.x <= bounds_.right && point.y >= bounds_.top &&
               point.y <= bounds_.bottom;
    }
    void Add(OverlayItem item) {
        const BRect frame = view_.FrameOf(item);
        if (!taken_.IsFree(frame)) return;
        taken_.Add(frame);
        items_.push_back(std::move(item));
    }
    // What the right border would cut stands on the other side of the point `about`.
    void AddAt(BPoint where, float about, std::string text, rgb_color color) {
        OverlayItem item;
        item.anchor = OverlayItem::Anchor::kCanvas;
        item.where = {std::floor(where.x), std::floor(where.y)};
        item.text = std::move(text);
        item.color = color;
        if (const BRect frame = view_.FrameOf(item); frame.right > bounds_.right)
            item.where.x = std::floor(2.0f * about - item.where.x - frame.Width());
        Add(std::move(item));
    }
    [[nodiscard]] std::size_t Count() const { return items_.size(); }
    [[nodiscard]] std::vector<OverlayItem> Take() { return std::move(items_); }

private:
    const CanvasView& view_;
    const BRect bounds_;
    const double scale_;
    TakenFrames taken_;
    std::vector<OverlayItem> items_;
};

std::string LengthText(const SpaceDrawing::Mark& mark, const UnitTable& units) {
    return Grouped(print_double(mark.length / mark.unit, kDigits)) + ' ' +
           units.Abbreviation(mark.unit);
}

}  // namespace

std::vector<OverlayItem> SpaceTexts(const SpaceDrawing& drawing, const SpaceScene& scene,
                                    const SpaceOptions& options, const SpaceMap& map,
                                    const SpaceUnits& units, const CanvasView& view) {
    TextPlaces places(view, drawing.Scale());
    const auto addUsual = [&](OverlayItem item) {
        item.color = options.Text();
        places.Add(std::move(item));
    };
    if (options.scaleBar && units.distances != nullptr)
        addUsual(MakeScaleBar(map.Scale() / drawing.Scale(), units.distance, *units.distances));
    if (options.time && units.times != nullptr)
        addUsual(MakeTimeText(units.timePrefix, scene.time, units.time, *units.times));
    for (const SpaceDrawing::Mark& mark : drawing.Marks())
        if (const BPoint at = places.ToView(mark.where); mark.letter != '\0')
            places.AddAt(at, at.x, std::string(1, mark.letter), options.Text());
    if (options.names) {
        const std::size_t most = places.Count() + kMaxNames;
        for (const SpaceDrawing::Disc& disc : drawing.Discs()) {
            const BPoint center = places.ToView(disc.center);
            if (!places.IsSeen(center) || places.Count() >= most) continue;
            const float away = 0.7f * static_cast<float>(disc.radius / drawing.Scale()) + kNameGap;
            places.AddAt({center.x + away, center.y - away}, center.x,
                         scene.bodies[static_cast<std::size_t>(disc.body)].name, options.Text());
        }
    }
    for (const SpaceDrawing::Mark& mark : drawing.Marks())
        if (const BPoint at = places.ToView(mark.where);
            mark.letter == '\0' && units.distances != nullptr)
            places.AddAt(at, at.x, LengthText(mark, *units.distances), {125, 135, 155, 255});
    return places.Take();
}
