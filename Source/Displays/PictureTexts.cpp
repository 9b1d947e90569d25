#include "PictureTexts.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "LineClipping.h"

namespace {

constexpr float kInset = 12.0f;  // of texts from the view's corners
constexpr rgb_color kTextColor{205, 210, 220, 255};
constexpr rgb_color kChosenColor{255, 255, 255, 255};

// The scale bar is at most so long, and at least two fifths of that.
constexpr double kMaxBar = 180.0;
// A bar of less than so many of a unit is shown in a smaller one.
constexpr double kLeastUnits = 0.01;
constexpr double kKilometre = 1000.0;
constexpr double kMetre = 1.0;

constexpr double kPlainTimes = 1e7;  // times below it are written without an exponent
constexpr int kTimeDecimals = 3;
constexpr int kTimeDigits = 8;
constexpr int kBarDigits = 6;

// Names: more are not readable. Their room is guessed, as there may be no fonts to ask.
constexpr std::size_t kMaxNames = 200;
constexpr float kLetterWidth = 7.5f;
constexpr float kNameHeight = 15.0f;
constexpr float kNameGap = 3.0f;

constexpr float kHoverRadius = 8.0f;

std::string NumberText(double value, std::chars_format format, int precision) {
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, value, format, precision).ptr;
    return {text, end};
}

// The largest of 1, 2 and 5 times a power of ten that is not above the limit.
double RoundLength(double limit) {
    const double power = std::pow(10.0, std::floor(std::log10(limit)));
    for (const double factor : {5.0, 2.0})
        if (factor * power <= limit) return factor * power;
    return power;
}

// What is to the right of a name's begin must be free of it.
bool Overlap(const OverlayItem& a, const OverlayItem& b) {
    const OverlayItem& left = a.where.x <= b.where.x ? a : b;
    const float width = kLetterWidth * static_cast<float>(left.text.size() + 1);
    return std::abs(a.where.x - b.where.x) < width && std::abs(a.where.y - b.where.y) < kNameHeight;
}

bool IsTooSmall(double scale, double unit) {
    return RoundLength(kMaxBar / (scale * unit)) < kLeastUnits;
}

}  // namespace

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
    bar.text =
        NumberText(length, std::chars_format::general, kBarDigits) + ' ' + units.Abbreviation(unit);
    bar.color = kTextColor;
    bar.length = static_cast<float>(length * unit * scale);
    return bar;
}

OverlayItem MakeTimeText(const std::string& prefix, double time, double uval,
                         const UnitTable& units) {
    const double shown = time / uval;
    const std::string number = std::abs(shown) < kPlainTimes
                                   ? NumberText(shown, std::chars_format::fixed, kTimeDecimals)
                                   : NumberText(shown, std::chars_format::general, kTimeDigits);
    OverlayItem text;
    text.anchor = OverlayItem::Anchor::kLeftTop;
    text.where = {kInset, kInset};
    text.text = prefix + number + ' ' + units.Abbreviation(uval);
    text.color = kTextColor;
    return text;
}

OverlayItem MakeName(const TrajectoryCache::Disc& disc, const std::string& name, bool isChosen) {
    // Beside the upper right of the disc.
    const float distance = disc.radius * 0.7f + kNameGap;
    OverlayItem text;
    text.anchor = OverlayItem::Anchor::kCanvas;
    text.where = {std::floor(disc.center.x + distance), std::floor(disc.center.y - distance)};
    text.text = name;
    text.color = isChosen ? kChosenColor : kTextColor;
    return text;
}

std::vector<OverlayItem> MakeNames(const TrajectoryCache& cache, const BodyLabels& labels,
                                   BRect bounds) {
    std::vector<OverlayItem> names;
    const int32 count = std::min(cache.CountBodies(), static_cast<int32>(labels.bodies.size()));
    for (int32 body = 0; body < count && names.size() < kMaxNames; body++) {
        const TrajectoryCache::Disc& disc = cache.DiscAt(body);
        if (!IsInside(disc.center, bounds)) continue;
        const OverlayItem name =
            MakeName(disc, labels.bodies[static_cast<std::size_t>(body)].name, false);
        const bool isFree =
            std::none_of(names.begin(), names.end(),
                         [&name](const OverlayItem& other) { return Overlap(name, other); });
        if (isFree) names.push_back(name);
    }
    return names;
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
