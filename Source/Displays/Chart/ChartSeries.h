// The points of one line of a chart, and the least and greatest values of blocks of them, so that
// any number of points is drawn in a time that the width of the picture sets. A plain value.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

// Of nothing: low is greater than high.
struct ChartSpan {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    [[nodiscard]] bool IsEmpty() const { return !(low <= high); }
    // What is not a number adds nothing.
    void Add(double value) {
        low = std::fmin(low, value);
        high = std::fmax(high, value);
    }
    void Add(const ChartSpan& other) {
        low = std::fmin(low, other.low);
        high = std::fmax(high, other.high);
    }
    bool operator==(const ChartSpan&) const = default;
};

class ChartSeries {
public:
    struct Point {
        double time;  // s
        double x;     // of a chart over time the same
        double y;     // not a number: here the line has a gap
    };

    // Times ascend.
    void Add(const Point& point);
    // Only the first so many stay.
    void Cut(std::size_t count);

    [[nodiscard]] std::size_t Count() const { return points_.size(); }
    [[nodiscard]] const Point& operator[](std::size_t i) const { return points_[i]; }
    // Of the y of the points from `first` up to `end`.
    [[nodiscard]] ChartSpan Envelope(std::size_t first, std::size_t end) const;
    // Of all y that are more than 0.
    [[nodiscard]] ChartSpan PositiveEnvelope() const;
    // Of all x, or of those that are more than 0.
    [[nodiscard]] ChartSpan Extent(bool isPositive) const;
    // The number of points before that time.
    [[nodiscard]] std::size_t Before(double time) const;
    // On the line between the two points around that time; y is not a number where there is none.
    [[nodiscard]] Point At(double time) const;

private:
    static constexpr std::size_t kBlock = 8;

    std::vector<Point> points_;
    std::vector<std::vector<ChartSpan>> levels_;  // of blocks of 8 points, of 64, ...
};
