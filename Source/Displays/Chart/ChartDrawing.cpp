#include "Displays/Chart/ChartDrawing.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/Interface/Canvas/LineClip.h"

namespace {

// Of the plot from the picture's borders.
constexpr float kLeft = 84.0f;
constexpr float kRight = 16.0f;
constexpr float kTop = 30.0f;
constexpr float kBottom = 46.0f;
constexpr float kMinSide = 20.0f;

constexpr float kTick = 5.0f;
constexpr float kTextGap = 6.0f;
constexpr float kRow = 18.0f;
constexpr float kLegendInset = 12.0f;
constexpr float kSwatch = 14.0f;
constexpr float kAcrossSpacing = 90.0f;
constexpr float kUpSpacing = 40.0f;
constexpr float kDot = 1.5f;
constexpr float kCursorDot = 4.0f;
constexpr float kMarkGap = 90.0f;  // of the names of marks
// Of a column, which are drawn one by one.
constexpr std::size_t kFewPoints = 4;
// More points of a line that goes to and fro are drawn as points.
constexpr std::size_t kMaxJoined = 20'000;

struct Colors {
    rgb_color background, grid, frame, text, epoch, merger, cursor;
};
constexpr Colors kDark{{28, 30, 38, 255},    {48, 52, 62, 255},  {120, 126, 140, 255},
                       {205, 210, 220, 255}, {90, 98, 116, 255}, {170, 110, 60, 255},
                       {255, 208, 84, 255}};
constexpr Colors kLight{{255, 255, 255, 255}, {226, 229, 234, 255}, {120, 124, 132, 255},
                        {40, 44, 52, 255},    {170, 176, 188, 255}, {214, 120, 40, 255},
                        {190, 120, 0, 255}};

constexpr rgb_color kOnDark[] = {{102, 178, 255, 255}, {255, 159, 67, 255},  {104, 211, 145, 255},
                                 {245, 110, 130, 255}, {190, 150, 255, 255}, {244, 214, 84, 255},
                                 {90, 212, 222, 255},  {240, 150, 210, 255}};
constexpr rgb_color kOnLight[] = {{20, 100, 190, 255}, {200, 90, 0, 255},   {20, 130, 70, 255},
                                  {190, 30, 60, 255},  {110, 60, 180, 255}, {140, 110, 0, 255},
                                  {0, 125, 140, 255},  {170, 40, 130, 255}};

const Colors& ColorsOf(bool isLight) {
    return isLight ? kLight : kDark;
}

// Puts points into curves, cut at the plot's frame; a point that is none ends a curve.
class CurvePen {
public:
    CurvePen(BRect frame, rgb_color color, std::vector<ChartItems::Curve>* curves)
        : frame_(frame), color_(color), curves_(curves) {}

    void Add(double x, double y) {
        if (!std::isfinite(x) || !std::isfinite(y)) return Lift();
        if (isDown_) Join(x, y);
        isDown_ = true;
        x_ = x;
        y_ = y;
    }
    void Lift() { isDown_ = isJoined_ = false; }

private:
    void Join(double x, double y) {
        double x0 = x_;
        double y0 = y_;
        const bool isSeen = ClipLine(frame_, &x0, &y0, &x, &y);
        const BPoint from{static_cast<float>(x0), static_cast<float>(y0)};
        const BPoint to{static_cast<float>(x), static_cast<float>(y)};
        if (!isSeen) isJoined_ = false;
        if (!isSeen || from == to) return;
        if (!isJoined_ || curves_->back().points.back() != from)
            curves_->push_back({{from}, color_});
        curves_->back().points.push_back(to);
        isJoined_ = true;
    }

    const BRect frame_;
    const rgb_color color_;
    std::vector<ChartItems::Curve>* const curves_;
    bool isDown_ = false;
    bool isJoined_ = false;  // the last curve goes on
    double x_ = 0.0;
    double y_ = 0.0;
};

// Where values lie along an axis, without a division for each.
class QuickPlace {
public:
    QuickPlace(const ChartAxis& axis, const ChartScene::Axis& scene)
        : axis_(axis),
          isLinear_(!scene.isLog && scene.range.high > scene.range.low),
          low_(scene.range.low),
          lowPlace_(axis.FinePlaceOf(low_)),
          slope_((axis.FinePlaceOf(scene.range.high) - lowPlace_) / (scene.range.high - low_)) {}

    [[nodiscard]] double Of(double value) const {
        return isLinear_ ? lowPlace_ + slope_ * (value - low_) : axis_.FinePlaceOf(value);
    }

private:
    const ChartAxis& axis_;
    const bool isLinear_;
    const double low_;
    const double lowPlace_;
    const double slope_;
};

}  // namespace

rgb_color ChartDrawing::ColorOf(std::size_t line, bool isLight) {
    return isLight ? kOnLight[line % std::size(kOnLight)] : kOnDark[line % std::size(kOnDark)];
}

ChartDrawing::ChartDrawing(const ChartScene& scene, float width, float height)
    : scene_(scene),
      width_(width),
      height_(height),
      plot_{kLeft, kTop, std::max(kLeft + kMinSide, width - kRight),
            std::max(kTop + kMinSide, height - kBottom)},
      across_(scene.across.range, scene.across.unit, scene.across.isLog, plot_.left, plot_.right),
      up_(scene.up.range, scene.up.unit, scene.up.isLog, plot_.bottom, plot_.top) {}

ChartItems ChartDrawing::Find() const {
    ChartItems items;
    items.width = width_;
    items.height = height_;
    items.plot = plot_;
    items.background = ColorsOf(scene_.isLight).background;
    AddGrid(&items);
    AddMarks(&items);
    for (const ChartScene::Line& line : scene_.lines) {
        if (scene_.areDots)
            AddDots(line, &items);
        else if (scene_.isOverTime)
            AddTimeCurve(line, &items);
        else
            AddCurve(line, &items);
    }
    AddCursor(&items);
    AddLegend(&items);
    return items;
}

BPoint ChartDrawing::PlaceOf(const ChartSeries::Point& point) const {
    return {across_.PlaceOf(point.x), up_.PlaceOf(point.y)};
}

void ChartDrawing::AddGrid(ChartItems* items) const {
    using Align = ChartItems::Text::Align;
    const Colors& colors = ColorsOf(scene_.isLight);
    const auto& [left, top, right, bottom] = plot_;
    for (const ChartAxis::Tick& tick : across_.Ticks(kAcrossSpacing)) {
        const float x = std::round(across_.PlaceOf(tick.value));
        items->bars.push_back({{x, top, x, bottom}, colors.grid});
        items->frame.push_back({{x, bottom, x, bottom + kTick}, colors.frame});
        items->texts.push_back(
            {{x, bottom + kTick + kTextGap + 4.0f}, tick.label, colors.text, Align::kMiddle});
    }
    for (const ChartAxis::Tick& tick : up_.Ticks(kUpSpacing)) {
        const float y = std::round(up_.PlaceOf(tick.value));
        items->bars.push_back({{left, y, right, y}, colors.grid});
        items->frame.push_back({{left - kTick, y, left, y}, colors.frame});
        items->texts.push_back(
            {{left - kTick - kTextGap, y}, tick.label, colors.text, Align::kRight});
    }
    for (const BRect& side : {BRect{left, top, left, bottom}, BRect{right, top, right, bottom},
                              BRect{left, top, right, top}, BRect{left, bottom, right, bottom}})
        items->frame.push_back({side, colors.frame});
    items->texts.push_back(
        {{right, height_ - kTextGap - 4.0f}, scene_.across.title, colors.text, Align::kRight});
    items->texts.push_back({{kTextGap, kTop / 2.0f}, scene_.up.title, colors.text, Align::kLeft});
}

void ChartDrawing::AddMarks(ChartItems* items) const {
    const Colors& colors = ColorsOf(scene_.isLight);
    float free = plot_.left;
    for (const ChartScene::Mark& mark : scene_.marks) {
        const float x = std::round(across_.PlaceOf(mark.time));
        if (x < plot_.left || x > plot_.right) continue;
        const rgb_color color = mark.isMerger ? colors.merger : colors.epoch;
        items->bars.push_back({{x, plot_.top, x, plot_.bottom}, color});
        if (mark.name.empty() || x < free || x + kMarkGap > plot_.right) continue;
        free = x + kMarkGap;
        items->texts.push_back({{x + kTextGap, plot_.bottom - kRow / 2.0f},
                                mark.name,
                                mark.isMerger ? colors.merger : colors.frame,
                                ChartItems::Text::Align::kLeft});
    }
}

// A column of pixels has the first of its points, the least and the greatest, and the last.
void ChartDrawing::AddTimeCurve(const ChartScene::Line& line, ChartItems* items) const {
    const ChartSeries& series = *line.series;
    CurvePen pen(plot_, line.color, &items->curves);
    const auto add = [&](double x, double y) { pen.Add(x, up_.FinePlaceOf(y)); };
    const auto addAt = [&](double time) { add(across_.FinePlaceOf(time), series.At(time).y); };
    const double left = across_.ValueAt(plot_.left);
    std::size_t next = series.Before(left);
    addAt(left);
    for (float x = plot_.left; x <= plot_.right && next < series.Count(); x += 1.0f) {
        const std::size_t end = series.Before(across_.ValueAt(x + 0.5f));
        if (end <= next) continue;
        if (end - next <= kFewPoints) {
            for (; next < end; next++)
                add(across_.FinePlaceOf(series[next].x), series[next].y);
            continue;
        }
        const ChartSpan span = series.Envelope(next, end);
        const auto column = static_cast<double>(x);
        add(column, series[next].y);
        if (!span.IsEmpty()) {
            add(column, span.low);
            add(column, span.high);
        }
        add(column, series[end - 1].y);
        next = end;
    }
    addAt(across_.ValueAt(plot_.right));
}

void ChartDrawing::AddCurve(const ChartScene::Line& line, ChartItems* items) const {
    const ChartSeries& series = *line.series;
    if (series.Count() > kMaxJoined) return AddDots(line, items);
    CurvePen pen(plot_, line.color, &items->curves);
    for (std::size_t i = 0; i < series.Count(); i++)
        pen.Add(across_.FinePlaceOf(series[i].x), up_.FinePlaceOf(series[i].y));
}

// A pixel has one dot. Those that have dots all around them are filled, a row at a time: nobody
// could tell the dots from one another.
void ChartDrawing::AddDots(const ChartScene::Line& line, ChartItems* items) const {
    const auto columns = static_cast<std::size_t>(plot_.right - plot_.left) + 1;
    const auto rows = static_cast<std::size_t>(plot_.bottom - plot_.top) + 1;
    std::vector<uint8> isTaken(columns * rows);
    std::vector<std::pair<std::size_t, BPoint>> places;
    const QuickPlace across(across_, scene_.across);
    const QuickPlace up(up_, scene_.up);
    for (std::size_t i = 0; i < line.series->Count(); i++) {
        const ChartSeries::Point& point = (*line.series)[i];
        const double x = across.Of(point.x) - static_cast<double>(plot_.left);
        const double y = up.Of(point.y) - static_cast<double>(plot_.top);
        // What is no number is nowhere.
        if (!(x >= 0.0 && x < static_cast<double>(columns) && y >= 0.0 &&
              y < static_cast<double>(rows)))
            continue;
        const std::size_t pixel =
            static_cast<std::size_t>(y) * columns + static_cast<std::size_t>(x);
        if (isTaken[pixel] != 0) continue;
        isTaken[pixel] = 1;
        places.emplace_back(pixel, PlaceOf(point));
    }
    const auto isInside = [&](std::size_t pixel) {
        const std::size_t column = pixel % columns;
        if (pixel < columns || pixel + columns >= isTaken.size() || column == 0 ||
            column + 1 == columns)
            return false;
        const auto areThree = [&](std::size_t middle) {
            return (isTaken[middle - 1] & isTaken[middle] & isTaken[middle + 1]) != 0;
        };
        return areThree(pixel - columns) && areThree(pixel) && areThree(pixel + columns);
    };
    for (const auto& [pixel, place] : places)
        if (!isInside(pixel)) items->dots.push_back({place, kDot, line.color});
    for (std::size_t pixel = columns; pixel + columns < isTaken.size(); pixel++) {
        if (isTaken[pixel] == 0 || !isInside(pixel)) continue;
        const std::size_t first = pixel;
        while (isInside(pixel + 1))
            pixel++;
        const std::size_t row = first / columns;
        const auto y = plot_.top + static_cast<float>(row);
        const auto x = plot_.left + static_cast<float>(first % columns);
        items->bars.push_back({{x, y, x + static_cast<float>(pixel - first), y}, line.color});
    }
}

void ChartDrawing::AddCursor(ChartItems* items) const {
    if (!scene_.cursor) return;
    const rgb_color color = ColorsOf(scene_.isLight).cursor;
    if (scene_.isOverTime) {
        const float x = std::round(across_.PlaceOf(*scene_.cursor));
        if (x >= plot_.left && x <= plot_.right)
            items->bars.push_back({{x, plot_.top, x, plot_.bottom}, color});
    }
    for (const ChartScene::Line& line : scene_.lines) {
        const ChartSeries::Point point = line.series->At(*scene_.cursor);
        if (!scene_.areDots && !std::isnan(point.y))
            items->dots.push_back({PlaceOf(point), kCursorDot, line.color});
    }
}

void ChartDrawing::AddLegend(ChartItems* items) const {
    const Colors& colors = ColorsOf(scene_.isLight);
    float y = plot_.top + kLegendInset;
    for (std::size_t i = 0; i < scene_.lines.size() && y < plot_.bottom; i++, y += kRow) {
        const ChartScene::Line& line = scene_.lines[i];
        const float x = plot_.left + kLegendInset;
        items->frame.push_back({{x, y - 1.0f, x + kSwatch, y + 1.0f}, line.color});
        std::string text = line.name;
        if (i < scene_.values.size() && !scene_.values[i].empty()) text += ": " + scene_.values[i];
        items->texts.push_back({{x + kSwatch + kTextGap, y},
                                std::move(text),
                                colors.text,
                                ChartItems::Text::Align::kLeft});
    }
    if (!scene_.note.empty())
        items->texts.push_back(
            {{(plot_.left + plot_.right) / 2.0f, (plot_.top + plot_.bottom) / 2.0f},
             scene_.note,
             colors.text,
             ChartItems::Text::Align::kMiddle});
}
