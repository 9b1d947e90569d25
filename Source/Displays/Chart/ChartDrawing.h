// Finds where everything of a chart lies in a picture of a given size. However many points a line
// has, it becomes a few for each column of pixels. A plain value.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Displays/Chart/ChartAxis.h"
#include "Displays/Chart/ChartItems.h"
#include "Displays/Chart/ChartSeries.h"

// What is to be seen. Plain values.
struct ChartScene {
    struct Line {
        const ChartSeries* series;
        std::string name;
        rgb_color color;
    };
    struct Mark {
        double time;  // s
        std::string name;
        bool isMerger;
    };
    struct Axis {
        ChartRange range;
        double unit = 1.0;  // SI
        bool isLog = false;
        std::string title;  // with the unit
        std::string unitName;
    };

    std::vector<Line> lines;
    std::vector<Mark> marks;  // of a chart over time
    Axis across;
    Axis up;
    bool isOverTime = true;
    bool areDots = false;  // points that no line joins
    bool isLight = false;
    std::optional<double> cursor;  // s
    // What the lines are at the cursor; as many as there are lines.
    std::vector<std::string> values;
    std::string note;  // where there is nothing to show
};

class ChartDrawing {
public:
    ChartDrawing(const ChartScene& scene, float width, float height);

    [[nodiscard]] ChartItems Find() const;
    [[nodiscard]] const ChartAxis& Across() const { return across_; }
    [[nodiscard]] const ChartAxis& Up() const { return up_; }
    [[nodiscard]] BRect Plot() const { return plot_; }
    // The colour of a line by its number.
    [[nodiscard]] static rgb_color ColorOf(std::size_t line, bool isLight);

private:
    void AddGrid(ChartItems* items) const;
    void AddMarks(ChartItems* items) const;
    void AddTimeCurve(const ChartScene::Line& line, ChartItems* items) const;
    void AddCurve(const ChartScene::Line& line, ChartItems* items) const;
    void AddDots(const ChartScene::Line& line, ChartItems* items) const;
    void AddCursor(ChartItems* items) const;
    void AddLegend(ChartItems* items) const;
    [[nodiscard]] BPoint PlaceOf(const ChartSeries::Point& point) const;

    const ChartScene& scene_;
    float width_;
    float height_;
    BRect plot_;
    ChartAxis across_;
    ChartAxis up_;
};
