// One axis of a chart: where values lie along a line of pixels, and the round values that are
// marked on it. Plain values.
#pragma once

#include <string>
#include <vector>

// The values at the two ends, in SI units.
struct ChartRange {
    double low = 0.0;
    double high = 1.0;

    bool operator==(const ChartRange&) const = default;
};

class ChartAxis {
public:
    struct Tick {
        double value;  // SI
        std::string label;
    };

    // `unit`: what is written at the ticks, in SI units. A logarithmic axis is for positive values.
    // The low end lies at the pixel `from`.
    ChartAxis(const ChartRange& range, double unit, bool isLog, float from, float to);

    // Not finite where the axis cannot have it; the other one lies somewhere beyond the ends then.
    [[nodiscard]] double FinePlaceOf(double value) const;
    [[nodiscard]] float PlaceOf(double value) const;
    [[nodiscard]] double ValueAt(float place) const;
    // Round values between the ends, no nearer to one another than so many pixels.
    [[nodiscard]] std::vector<Tick> Ticks(float spacing) const;
    // What the picture shows after moving by so many pixels, and after growing by a factor about a
    // place. An axis can be neither so short nor so long that numbers do not tell its ends apart.
    [[nodiscard]] ChartRange Moved(float pixels) const;
    [[nodiscard]] ChartRange Zoomed(float about, double factor) const;

private:
    [[nodiscard]] double Scaled(double value) const;
    [[nodiscard]] double Unscaled(double scaled) const;
    [[nodiscard]] ChartRange RangeOf(double low, double high) const;
    [[nodiscard]] std::vector<Tick> Decades(int step) const;

    ChartRange range_;
    double unit_;
    bool isLog_;
    float from_;
    float to_;
    double low_;  // scaled
    double high_;
};

// The least of 1, 2 and 5 times powers of ten that is no less.
[[nodiscard]] double RoundStep(double least);
// A range that shows all these values with some room about them; of a single value one around it.
[[nodiscard]] ChartRange RangeAround(double low, double high, bool isLog);
