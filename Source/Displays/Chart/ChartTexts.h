// How a chart says what it shows: names of lines, titles and units of axes, values. Used with the
// display's lock; reads texts and units only.
#pragma once

#include <string>

#include "Displays/Chart/ChartDrawing.h"
#include "Displays/Chart/ChartReader.h"

struct ChartFields;
struct DisplayContext;

class ChartTexts {
public:
    explicit ChartTexts(const DisplayContext& context) : context_(context) {}

    // What times and lengths are told in, SI.
    double timeUnit = 1.0;
    double lengthUnit = 1.0;

    [[nodiscard]] std::string NameOf(Quantity quantity) const;
    // "Planet about Star: Distance"; of a whole simulation the quantity alone.
    [[nodiscard]] std::string NameOf(const ChartLine& line, const std::string& body,
                                     const std::string& about) const;
    [[nodiscard]] std::string TimeTitle() const;
    // Of the quantities that share an axis; sets unit and title by the range. Without any: of time.
    void Name(const std::vector<Quantity>& quantities, ChartScene::Axis* axis) const;
    // A value on that axis, with its unit; empty where there is none.
    [[nodiscard]] static std::string ValueText(double value, const ChartScene::Axis& axis);

private:
    void SetUnit(Dimension dimension, ChartScene::Axis* axis) const;
    [[nodiscard]] const char* NameOf(Dimension dimension) const;
    [[nodiscard]] std::string WithUnit(const std::string& name, const std::string& unit) const;

    const DisplayContext& context_;
};
