// What a chart shows, as files. No state; any thread. Numbers have a decimal point in every
// language.
#pragma once

#include <string>

#include "Displays/Chart/ChartDrawing.h"

// A picture of lines and texts (SVG 1.1).
[[nodiscard]] std::string ChartSvg(const ChartItems& items);
// A table with a row for every moment at which one of the lines has a point that is shown, and for
// every line a column, empty where it has none; of a chart of one quantity against another two.
// Numbers are in the units of the axes, and read back to the bit.
[[nodiscard]] std::string ChartCsv(const ChartScene& scene, const std::string& timeTitle,
                                   double timeUnit);
