#include "Displays/Chart/ChartExport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "Platform/Interface/Canvas/LineClip.h"

namespace {

constexpr int kPlaces = 2;  // of a pixel, after the point

std::string NumberText(double value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string Pixels(float value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, static_cast<double>(value),
                                std::chars_format::fixed, kPlaces)
                      .ptr};
}

std::string ColorText(rgb_color color) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "#";
    for (const uint8 part : {color.red, color.green, color.blue}) {
        text += kDigits[part >> 4];
        text += kDigits[part & 15];
    }
    return text;
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else if (c == '"')
            escaped += "&quot;";
        else if (static_cast<unsigned char>(c) >= ' ')
            escaped += c;
    }
    return escaped;
}

std::string Attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + value + '"';
}

std::string BarText(const ChartItems::Bar& bar) {
    const BRect& r = bar.rect;
    return "<rect" + Attribute("x", Pixels(r.left)) + Attribute("y", Pixels(r.top)) +
           Attribute("width", Pixels(r.right - r.left + 1.0f)) +
           Attribute("height", Pixels(r.bottom - r.top + 1.0f)) +
           Attribute("fill", ColorText(bar.color)) + "/>\n";
}

std::string CurveText(const ChartItems::Curve& curve) {
    std::string points;
    for (const BPoint& point : curve.points) {
        if (!points.empty()) points += ' ';
        points += Pixels(point.x) + ',' + Pixels(point.y);
    }
    return "<polyline" + Attribute("points", points) + Attribute("fill", "none") +
           Attribute("stroke", ColorText(curve.color)) + "/>\n";
}

std::string DotText(const ChartItems::Dot& dot) {
    return "<circle" + Attribute("cx", Pixels(dot.where.x)) + Attribute("cy", Pixels(dot.where.y)) +
           Attribute("r", Pixels(dot.radius)) + Attribute("fill", ColorText(dot.color)) + "/>\n";
}

std::string TextText(const ChartItems::Text& text) {
    using Align = ChartItems::Text::Align;
    const char* const anchor = text.align == Align::kLeft     ? "start"
                               : text.align == Align::kMiddle ? "middle"
                                                              : "end";
    return "<text" + Attribute("x", Pixels(text.where.x)) + Attribute("y", Pixels(text.where.y)) +
           Attribute("text-anchor", anchor) + Attribute("dominant-baseline", "central") +
           Attribute("fill", ColorText(text.color)) + '>' + Escaped(text.text) + "</text>\n";
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += c;
        quoted += c;
    }
    return quoted + '"';
}

// Goes through the points of all lines in the order of time.
class Rows {
public:
    explicit Rows(const ChartScene& scene) : scene_(scene), next_(scene.lines.size()) {}

    // False: there are no more.
    bool Next() {
        constexpr double kNever = std::numeric_limits<double>::infinity();
        time_ = kNever;
        for (std::size_t i = 0; i < next_.size(); i++) {
            Skip(i);
            if (HasPoint(i)) time_ = std::min(time_, PointOf(i).time);
        }
        return time_ != kNever;
    }
    [[nodiscard]] double Time() const { return time_; }
    // The line's point in this row, or null; it is not there any more afterwards.
    const ChartSeries::Point* Take(std::size_t line) {
        if (!HasPoint(line) || PointOf(line).time != time_) return nullptr;
        return &(*scene_.lines[line].series)[next_[line]++];
    }

private:
    [[nodiscard]] bool HasPoint(std::size_t line) const {
        return next_[line] < scene_.lines[line].series->Count();
    }
    [[nodiscard]] const ChartSeries::Point& PointOf(std::size_t line) const {
        return (*scene_.lines[line].series)[next_[line]];
    }
    void Skip(std::size_t line) {
        while (HasPoint(line) && !IsShown(PointOf(line)))
            next_[line]++;
    }
    [[nodiscard]] bool IsShown(const ChartSeries::Point& point) const {
        const ChartRange& across = scene_.across.range;
        const ChartRange& up = scene_.up.range;
        return point.x >= across.low && point.x <= across.high && point.y >= up.low &&
               point.y <= up.high;
    }

    const ChartScene& scene_;
    std::vector<std::size_t> next_;
    double time_ = 0.0;
};

}  // namespace

std::string ChartSvg(const ChartItems& items) {
    const std::string width = Pixels(items.width);
    const std::string height = Pixels(items.height);
    std::string svg = "<svg" + Attribute("xmlns", "http://www.w3.org/2000/svg") +
                      Attribute("width", width) + Attribute("height", height) +
                      Attribute("viewBox", "0 0 " + width + ' ' + height) +
                      Attribute("font-family", "sans-serif") + Attribute("font-size", "12") + ">\n";
    svg += BarText({{0.0f, 0.0f, items.width - 1.0f, items.height - 1.0f}, items.background});
    for (const ChartItems::Bar& bar : items.bars)
        svg += BarText(bar);
    for (const ChartItems::Curve& curve : items.curves)
        svg += CurveText(curve);
    for (const ChartItems::Dot& dot : items.dots)
        if (IsInside(dot.where, items.plot)) svg += DotText(dot);
    for (const ChartItems::Bar& bar : items.frame)
        svg += BarText(bar);
    for (const ChartItems::Text& text : items.texts)
        svg += TextText(text);
    return svg + "</svg>\n";
}

std::string ChartCsv(const ChartScene& scene, const std::string& timeTitle, double timeUnit) {
    std::string csv = Quoted(timeTitle);
    for (const ChartScene::Line& line : scene.lines) {
        if (!scene.isOverTime) csv += ',' + Quoted(line.name + ": " + scene.across.title);
        csv += ',' + Quoted(line.name + ": " + scene.up.title);
    }
    csv += '\n';
    Rows rows(scene);
    while (rows.Next()) {
        csv += NumberText(rows.Time() / timeUnit);
        for (std::size_t i = 0; i < scene.lines.size(); i++) {
            const ChartSeries::Point* const point = rows.Take(i);
            if (!scene.isOverTime)
                csv += point == nullptr ? "," : ',' + NumberText(point->x / scene.across.unit);
            csv += point == nullptr ? "," : ',' + NumberText(point->y / scene.up.unit);
        }
        csv += '\n';
    }
    return csv;
}
