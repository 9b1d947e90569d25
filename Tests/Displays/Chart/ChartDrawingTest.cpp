// Lines, axes and files of charts, without a window.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>

#include "Displays/Chart/ChartDrawing.h"
#include "Displays/Chart/ChartExport.h"
#include "Displays/Chart/ChartFields.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

std::string Labels(const std::vector<ChartAxis::Tick>& ticks) {
    std::string labels;
    for (const ChartAxis::Tick& tick : ticks)
        labels += tick.label + ' ';
    return labels;
}

ChartSpan Naive(const ChartSeries& series, std::size_t first, std::size_t end) {
    ChartSpan span;
    for (std::size_t i = first; i < end; i++)
        span.Add(series[i].y);
    return span;
}

ChartScene SceneOf(const ChartSeries& series) {
    ChartScene scene;
    scene.lines.push_back({&series, "a <b> & \"c\"", {255, 0, 0, 255}});
    scene.values.emplace_back();
    scene.across = {{0.0, 100.0}, 10.0, false, "Time (dy)", "dy"};
    scene.up = {{-1.0, 1.0}, 0.5, false, "x (km)", "km"};
    return scene;
}

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        count++;
    return count;
}

}  // namespace

// However the series came to be: the least and greatest of any part are those of all its points.
TEST(ChartDrawingTest, BlocksHaveTheExtremesOfTheirPoints) {
    std::mt19937 engine(7);
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    ChartSeries series;
    const auto add = [&](std::size_t count) {
        for (std::size_t i = 0; i < count; i++) {
            const double y = engine() % 50 == 0 ? kNone : value(engine);
            const auto time = static_cast<double>(series.Count());
            series.Add({time, time, y});
        }
    };
    const auto expectAll = [&] {
        for (int i = 0; i < 300; i++) {
            std::size_t first = engine() % series.Count();
            std::size_t end = engine() % (series.Count() + 1);
            if (first > end) std::swap(first, end);
            EXPECT_EQ(series.Envelope(first, end), Naive(series, first, end))
                << first << ' ' << end;
        }
    };
    add(7);
    expectAll();
    add(5000);
    expectAll();
    for (const std::size_t count : {4097, 4096, 515, 9}) {
        series.Cut(count);
        ASSERT_EQ(series.Count(), count);
        expectAll();
        add(100);
        expectAll();
        series.Cut(count);
    }
}

// A column of pixels that has a thousand points shows all that they reach.
TEST(ChartDrawingTest, ASpikeBetweenPixelsIsSeen) {
    ChartSeries series;
    for (int i = 0; i < 100'000; i++)
        series.Add({i * 1e-3, i * 1e-3, i == 54'321 ? 0.9 : 0.0});
    const ChartScene scene = SceneOf(series);
    const ChartDrawing drawing(scene, 500.0f, 400.0f);
    const ChartItems items = drawing.Find();
    ASSERT_EQ(items.curves.size(), 1u);
    EXPECT_LT(items.curves[0].points.size(), 5000u);
    float top = 400.0f;
    float at = 0.0f;
    for (const BPoint& point : items.curves[0].points)
        if (point.y < top) std::tie(top, at) = std::pair(point.y, point.x);
    EXPECT_FLOAT_EQ(top, drawing.Up().PlaceOf(0.9));
    EXPECT_NEAR(at, drawing.Across().PlaceOf(54.321), 1.0f);
}

// A square full of points and one beside it: each pixel is painted once, and only at the edge by a
// dot.
TEST(ChartDrawingTest, ManyPointsFillAnArea) {
    ChartSeries series;
    for (int32 i = 0; i < 400; i++)
        for (int32 j = 0; j < 400; j++)
            series.Add({series.Count() * 1.0, 20.0 + 0.1 * i, -0.4 + 0.002 * j});
    series.Add({1e6, 90.0, 0.9});
    ChartScene scene = SceneOf(series);
    scene.isOverTime = false;
    scene.areDots = true;
    const std::size_t without = [&] {
        ChartScene empty = scene;
        empty.lines.clear();
        return ChartDrawing(empty, 500.0f, 400.0f).Find().bars.size();
    }();
    const ChartDrawing drawing(scene, 500.0f, 400.0f);
    const ChartItems items = drawing.Find();
    const float width = 40.0f * drawing.Plot().Width() / 100.0f;
    const float height = 0.8f * drawing.Plot().Height() / 2.0f;
    float painted = static_cast<float>(items.dots.size()) - 1.0f;
    for (std::size_t i = without; i < items.bars.size(); i++)
        painted += items.bars[i].rect.Width() + 1.0f;
    EXPECT_NEAR(painted / (width * height), 1.0f, 0.03f);
    EXPECT_NEAR(static_cast<float>(items.dots.size()), 2.0f * (width + height), 12.0f);
    const BPoint alone{drawing.Across().PlaceOf(90.0), drawing.Up().PlaceOf(0.9)};
    EXPECT_TRUE(std::any_of(items.dots.begin(), items.dots.end(),
                            [&](const ChartItems::Dot& dot) { return dot.where == alone; }));
}

TEST(ChartDrawingTest, TicksAreRoundAndFarEnoughApart) {
    EXPECT_EQ(Labels(ChartAxis({0.0, 1.0}, 1.0, false, 0, 500).Ticks(90)), "0 0.2 0.4 0.6 0.8 1 ");
    EXPECT_EQ(Labels(ChartAxis({-3e3, 7e3}, 1e3, false, 400, 0).Ticks(80)), "-2 0 2 4 6 ");
    // Digits are as many as it takes to tell them apart.
    EXPECT_EQ(Labels(ChartAxis({1.0, 1.0 + 4e-7}, 1.0, false, 0, 300).Ticks(90)),
              "1 1.0000002 1.0000004 ");
    EXPECT_EQ(Labels(ChartAxis({3e-15, 2e-9}, 1.0, true, 300, 0).Ticks(90)), "1e-14 1e-12 1e-10 ");
    EXPECT_EQ(Labels(ChartAxis({2.0, 5.0}, 1.0, true, 300, 0).Ticks(90)), "2 3 4 5 ");
    EXPECT_EQ(RoundStep(0.3), 0.5);
    EXPECT_EQ(RoundStep(6.0), 10.0);
}

TEST(ChartDrawingTest, AZoomKeepsWhatIsUnderThePointer) {
    for (const bool isLog : {false, true}) {
        const ChartAxis axis({1.0, 1000.0}, 1.0, isLog, 350.0f, 50.0f);
        const double value = axis.ValueAt(125.0f);
        const ChartAxis zoomed(axis.Zoomed(125.0f, 4.0), 1.0, isLog, 350.0f, 50.0f);
        EXPECT_NEAR(zoomed.ValueAt(125.0f), value, 1e-9 * value);
        EXPECT_NEAR(zoomed.ValueAt(50.0f), axis.ValueAt(106.25f), 1e-6 * value);
        const ChartAxis moved(axis.Moved(30.0f), 1.0, isLog, 350.0f, 50.0f);
        EXPECT_NEAR(moved.ValueAt(100.0f), axis.ValueAt(130.0f), 1e-9 * value);
    }
    // To no end where numbers end.
    ChartRange range{1.0, 2.0};
    for (int i = 0; i < 1000; i++)
        range = ChartAxis(range, 1.0, false, 0.0f, 100.0f).Zoomed(30.0f, 1.25);
    EXPECT_LT(range.low, range.high);
    const ChartRange flat = RangeAround(5.0, 5.0, false);
    EXPECT_TRUE(flat.low < 5.0 && flat.high > 5.0);
}

TEST(ChartDrawingTest, FilesHoldWhatIsShown) {
    ChartSeries series;
    for (const double time : {0.0, 0.1, 50.0, 80.0, 100.0, 120.0})
        series.Add({time, time, time == 50.0 ? kNone : 1.0 / 3.0});
    ChartSeries other;
    other.Add({0.1, 0.1, -0.25});
    ChartScene scene = SceneOf(series);
    scene.lines.push_back({&other, "d", {0, 255, 0, 255}});
    scene.values.emplace_back();
    EXPECT_EQ(ChartCsv(scene, "Time (dy)", 10.0),
              "\"Time (dy)\",\"a <b> & \"\"c\"\": x (km)\",\"d: x (km)\"\n"
              "0,0.6666666666666666,\n"
              "0.01,0.6666666666666666,-0.5\n"
              "8,0.6666666666666666,\n"
              "10,0.6666666666666666,\n");
    const std::string svg = ChartSvg(ChartDrawing(scene, 500.0f, 400.0f).Find());
    EXPECT_NE(svg.find("a &lt;b&gt; &amp; &quot;c&quot;"), std::string::npos);
    EXPECT_EQ(CountOf(svg, "<text"), CountOf(svg, "</text>"));
    EXPECT_EQ(CountOf(svg, "<"), CountOf(svg, "</") * 2 + CountOf(svg, "/>"));
    EXPECT_EQ(svg.find("\"nan"), std::string::npos);
    EXPECT_EQ(svg.find(",nan"), std::string::npos);
    // The gap stays one.
    EXPECT_EQ(CountOf(svg, "<polyline"), 2u);
}

TEST(ChartDrawingTest, FieldsComeBackAndWhatMakesNoSenseIsAsUsual) {
    ChartFields fields;
    fields.Toggle(Quantity::kEccentricity);
    EXPECT_EQ(fields.Quantities(), std::vector{Quantity::kEccentricity});
    fields.Toggle(Quantity::kEccentricity);
    EXPECT_EQ(fields.Quantities(), std::vector{Quantity::kEccentricity});
    fields.Toggle(Quantity::kVx);
    fields.Toggle(Quantity::kVy);
    fields.bodies = {7, 3};
    fields.about = 5;
    fields.against = static_cast<int32>(Quantity::kX);
    fields.crossing = static_cast<int32>(Crossing::kY);
    fields.isLight = fields.isChosenView = true;
    fields.across = {-2.0, 3.0};
    fields.up = {-4.0, 5.0};
    BMessage record;
    ASSERT_EQ(fields.Write(&record), B_OK);
    ChartFields read;
    read.Read(record);
    EXPECT_EQ(read.Quantities(), (std::vector{Quantity::kVx, Quantity::kVy}));
    EXPECT_EQ(read.bodies, fields.bodies);
    EXPECT_EQ(read.about, 5);
    EXPECT_EQ(read.Against(), Quantity::kX);
    EXPECT_EQ(read.Points(), Crossing::kY);
    EXPECT_TRUE(read.isLight && read.isChosenView);
    EXPECT_EQ(read.across, fields.across);
    EXPECT_EQ(read.up, fields.up);

    BMessage damaged;
    damaged.AddInt64("Chart shows", int64{1} << 50);
    damaged.AddInt32("Chart against", 19);
    damaged.AddInt32("Chart points", -3);
    damaged.AddDouble("Chart left", 3.0);
    damaged.AddDouble("Chart right", kNone);
    ChartFields usual;
    usual.Read(damaged);
    EXPECT_EQ(usual.Quantities(), std::vector{Quantity::kDistance});
    EXPECT_FALSE(usual.Against());
    EXPECT_EQ(usual.Points(), Crossing::kNone);
    EXPECT_FALSE(usual.isChosenView);
    // Of quantities that cannot share an axis the first stays.
    BMessage mixed;
    mixed.AddInt64("Chart shows", -1);
    usual.Read(mixed);
    EXPECT_EQ(DimensionOf(usual.Quantities().back()), Dimension::kLength);
}
