#include "Displays/Projection/PictureTexts.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "Displays/Projection/TakenFrames.h"
#include "Model/Units/QuantityText.h"
#include "Platform/Interface/Canvas/LineClip.h"

namespace {

constexpr float kInset = 12.0f;  // of texts from the view's corners
constexpr rgb_color kTextColor{205, 210, 220, 255};
constexpr rgb_color kChosenColor{255, 255, 255, 255};

// The scale bar is at most so long, and at least two fifths of that.
constexpr double kMaxBar = 180.0;
// A bar of less than so many of a unit is shown in a smaller one.
constexpr double kMinUnits = 0.01;
constexpr double kKilometre = 1000.0;
constexpr double kMetre = 1.0;

constexpr double kPlainTimes = 1e7;  // times below it are written without an exponent
constexpr int kTimeDecimals = 3;
// Of a few years the days are to be seen.
constexpr double kShortTimes = 10.0;
constexpr int kShortTimeDecimals = 5;
constexpr int kTimeDigits = 8;
constexpr int kBarDigits = 6;

constexpr std::size_t kMaxNames = 200;  // more are not readable
constexpr float kNameGap = 3.0f;

constexpr float kHoverRadius = 8.0f;

std::string FixedText(double value, int decimals) {
    char text[64];
    const auto end =
        std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr;
    return {text, end};
}

bool Contains(const BRect& outer, const BRect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
           outer.bottom >= inner.bottom;
}

// At the upper right of the disc.
OverlayItem NameText(const TrajectoryCache::Disc& disc, const std::string& name, rgb_color color) {
    const float distance = disc.radius * 0.7f + kNameGap;
    OverlayItem text;
    text.anchor = OverlayItem::Anchor::kCanvas;
    text.where = {std::floor(disc.center.x + distance), std::floor(disc.center.y - distance)};
    text.text = name;
    text.color = color;
    return text;
}

// Where that text begins on the other side of the disc.
float LeftOf(const TrajectoryCache::Disc& disc, const OverlayItem& text, const BRect& frame) {
    return std::floor(2.0f * disc.center.x - text.where.x - frame.Width());
}

const std::string& NameOf(const BodyLabels& labels, int32 body) {
    return labels.bodies[static_cast<std::size_t>(body)].name;
}

bool IsTooSmall(double scale, double unit) {
    return RoundLength(kMaxBar / (scale * unit)) < kMinUnits;
}

}  // namespace

double RoundLength(double limit) {
    const double power = std::pow(10.0, std::floor(std::log10(limit)));
    for (const double factor : {5.0, 2.0})
        if (factor * power <= limit) return factor * power;
    return power;
}

OverlayItem MakeScaleBar(double scale, double uval, const UnitTable& units) {
    // A document may have a scale that is none.
    if (!(scale > 0.0) || !std::isfinite(kMaxBar / scale)) return {};
    double unit = uval;
    for (const double smaller : {kKilometre, kMetre})
        if (smaller < unit && IsTooSmall(scale, unit)) unit = smaller;
    const double length = RoundLength(kMaxBar / (scale * unit));
    OverlayItem bar;
    bar.kind = OverlayItem::Kind::kBar;
    bar.anchor = OverlayItem::Anchor::kLeftBottom;
    bar.where = {kInset, kInset};
    bar.text = Grouped(print_double(length, kBarDigits)) + ' ' + units.Abbreviation(unit);
    bar.color = kTextColor;
    bar.length = static_cast<float>(length * unit * scale);
    return bar;
}

OverlayItem MakeTimeText(const std::string& prefix, double time, double uval,
                         const UnitTable& units) {
    const double shown = time / uval;
    const int decimals = std::abs(shown) < kShortTimes ? kShortTimeDecimals : kTimeDecimals;
    const std::string number = std::abs(shown) < kPlainTimes ? FixedText(shown, decimals)
                                                             : print_double(shown, kTimeDigits);
    OverlayItem text;
    text.anchor = OverlayItem::Anchor::kLeftTop;
    text.where = {kInset, kInset};
    text.text = prefix + number + ' ' + units.Abbreviation(uval);
    text.color = kTextColor;
    return text;
}

OverlayItem MakeTextBelow(const std::vector<OverlayItem>& texts, std::string line,
                          const TrajectoryView& view) {
    OverlayItem text;
    text.anchor = OverlayItem::Anchor::kLeftTop;
    text.where = {kInset, kInset};
    text.text = std::move(line);
    text.color = kTextColor;
    for (const OverlayItem& other : texts)
        if (other.anchor == OverlayItem::Anchor::kLeftTop)
            text.where.y = other.where.y + std::ceil(view.FrameOf(text).Height());
    return text;
}

void AddChosenName(const TrajectoryView& view, const BodyLabels& labels, int32 body,
                   std::vector<OverlayItem>* texts) {
    const TrajectoryCache::Disc& disc = view.Cache().DiscAt(body);
    const OverlayItem usual = NameText(disc, NameOf(labels, body), kChosenColor);
    const BRect frame = view.FrameOf(usual);
    const float left = LeftOf(disc, usual, frame);
    const float below = std::ceil(2.0f * disc.center.y - usual.where.y + frame.Height());
    const TakenFrames taken(view, *texts);
    for (const BPoint where : {usual.where, BPoint{usual.where.x, below},
                               BPoint{left, usual.where.y}, BPoint{left, below}}) {
        OverlayItem text = usual;
        text.where = where;
        const BRect covered = view.FrameOf(text);
        if (Contains(view.Bounds(), covered) && taken.IsFree(covered)) {
            texts->push_back(std::move(text));
            return;
        }
    }
    texts->push_back(usual);
}

void AddNames(const TrajectoryView& view, const BodyLabels& labels, int32 chosen,
              std::vector<OverlayItem>* texts) {
    const TrajectoryCache& cache = view.Cache();
    const BRect bounds = view.Bounds();
    const std::size_t most = texts->size() + kMaxNames;
    TakenFrames taken(view, *texts);
    const int32 count = std::min(cache.CountBodies(), static_cast<int32>(labels.bodies.size()));
    for (int32 body = 0; body < count && texts->size() < most; body++) {
        const TrajectoryCache::Disc& disc = cache.DiscAt(body);
        if (body == chosen || !IsInside(disc.center, bounds)) continue;
        OverlayItem name = NameText(disc, NameOf(labels, body), kTextColor);
        // Most names of a crowd need not be measured: their beginning is covered.
        if (!taken.IsFree(name.where)) continue;
        BRect frame = view.FrameOf(name);
        if (frame.right > bounds.right) {
            name.where.x = LeftOf(disc, name, frame);
            frame = view.FrameOf(name);
        }
        if (!taken.IsFree(frame)) continue;
        taken.Add(frame);
        texts->push_back(std::move(name));
    }
}

int32 FindBodyAt(const TrajectoryCache& cache, BPoint point) {
    int32 found = -1;
    float least = 0.0f;
    for (int32 body = 0; body < cache.CountBodies(); body++) {
        const TrajectoryCache::Disc& disc = cache.DiscAt(body);
        if (!disc.isOn) continue;
        const float distance = std::hypot(point.x - disc.center.x, point.y - disc.center.y);
        const bool isNear = distance <= std::max(disc.radius, kHoverRadius);
        if (!isNear || (found >= 0 && distance >= least)) continue;
        found = body;
        least = distance;
    }
    return found;
}
