// Charts: how many pictures a second they make of a million points.
#include <cmath>
#include <random>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Displays/Chart/ChartDrawing.h"
#include "Displays/Chart/ChartView.h"

namespace {

constexpr float kWidth = 1920.0f;
constexpr float kHeight = 1080.0f;
constexpr int32 kPoints = 1'000'000;

ChartSeries MakeSeries(bool isOverTime) {
    std::mt19937 engine(5);
    std::normal_distribution<double> noise(0.0, 0.02);
    ChartSeries series;
    for (int32 i = 0; i < kPoints; i++) {
        const double time = static_cast<double>(i) / kPoints;
        const double y = std::sin(40.0 * time) + noise(engine);
        series.Add({time, isOverTime ? time : 0.5 + 0.5 * std::cos(40.0 * time), y});
    }
    return series;
}

// Of a view that is being moved.
double PicturesPerSecond(const ChartSeries& series, bool isOverTime) {
    ChartView view(nullptr);
    view.ResizeTo(kWidth - 1.0f, kHeight - 1.0f);
    ChartScene scene;
    scene.isOverTime = isOverTime;
    scene.lines.push_back({&series, "line", ChartDrawing::ColorOf(0, false)});
    scene.across.range = {-0.05, 1.05};
    scene.up.range = {-1.2, 1.2};
    float way = 0.0f;
    const auto paint = [&] {
        way = 3.0f - way;
        scene.across.range = ChartDrawing(scene, kWidth, kHeight).Across().Moved(way);
        view.Paint(ChartDrawing(scene, kWidth, kHeight).Find());
    };
    return 1.0 / Measure({paint}, 1, 41)[0].median;
}

}  // namespace

void BenchCharts(BenchTable* table) {
    table->AddAtLeast("a chart at 1920x1080 of 1,000,000 points over time", 30.0,
                      PicturesPerSecond(MakeSeries(true), true), "pictures/s");
    table->AddAtLeast("the same, of one quantity against another", 30.0,
                      PicturesPerSecond(MakeSeries(false), false), "pictures/s");
}
