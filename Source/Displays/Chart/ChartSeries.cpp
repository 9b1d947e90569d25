#include "Displays/Chart/ChartSeries.h"

#include <algorithm>

void ChartSeries::Add(const Point& point) {
    std::size_t block = points_.size();
    points_.push_back(point);
    for (std::size_t level = 0; block > 0 || level < levels_.size(); level++) {
        block /= kBlock;
        if (level == levels_.size()) {
            // Of all that was there before.
            levels_.emplace_back(1, Envelope(0, points_.size() - 1));
        }
        if (block == levels_[level].size()) levels_[level].emplace_back();
        levels_[level][block].Add(point.y);
    }
}

void ChartSeries::Cut(std::size_t count) {
    if (count >= points_.size()) return;
    points_.resize(count);
    std::size_t below = count;  // blocks of the level below
    for (std::size_t level = 0; level < levels_.size(); level++) {
        const std::size_t size = (below + kBlock - 1) / kBlock;
        levels_[level].resize(size);
        if (size > 0) {
            // The last block has lost points.
            ChartSpan& last = levels_[level].back();
            last = {};
            for (std::size_t i = (size - 1) * kBlock; i < below; i++)
                level == 0 ? last.Add(points_[i].y) : last.Add(levels_[level - 1][i]);
        }
        below = size;
    }
}

ChartSpan ChartSeries::Envelope(std::size_t first, std::size_t end) const {
    ChartSpan span;
    const auto take = [&](std::size_t level, std::size_t i) {
        if (level == 0)
            span.Add(points_[i].y);
        else
            span.Add(levels_[level - 1][i]);
    };
    for (std::size_t level = 0; first < end; level++) {
        const bool isLast = level == levels_.size();
        while (first < end && (isLast || first % kBlock != 0))
            take(level, first++);
        while (first < end && end % kBlock != 0)
            take(level, --end);
        first /= kBlock;
        end /= kBlock;
    }
    return span;
}

ChartSpan ChartSeries::PositiveEnvelope() const {
    const ChartSpan all = Envelope(0, points_.size());
    if (all.low > 0.0) return all;
    ChartSpan span;
    for (const Point& point : points_)
        if (point.y > 0.0) span.Add(point.y);
    return span;
}

ChartSpan ChartSeries::Extent(bool isPositive) const {
    ChartSpan span;
    for (const Point& point : points_)
        if (!std::isnan(point.y) && (!isPositive || point.x > 0.0)) span.Add(point.x);
    return span;
}

std::size_t ChartSeries::Before(double time) const {
    const auto at = std::lower_bound(points_.begin(), points_.end(), time,
                                     [](const Point& point, double t) { return point.time < t; });
    return static_cast<std::size_t>(at - points_.begin());
}

ChartSeries::Point ChartSeries::At(double time) const {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    const std::size_t after = Before(time);
    if (after == points_.size()) return {time, kNone, kNone};
    const Point& b = points_[after];
    if (b.time == time) return b;
    if (after == 0) return {time, kNone, kNone};
    const Point& a = points_[after - 1];
    const double part = (time - a.time) / (b.time - a.time);
    return {time, std::lerp(a.x, b.x, part), std::lerp(a.y, b.y, part)};
}
