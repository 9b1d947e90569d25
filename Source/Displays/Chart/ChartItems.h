// What a picture of a chart is made of, when it has been found where everything lies. Coordinates
// are logical pixels from the picture's left-top corner. Plain values.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/GraphicsDefs.h"

struct ChartItems {
    struct Bar {
        BRect rect;
        rgb_color color;
    };
    struct Curve {
        std::vector<BPoint> points;
        rgb_color color;
    };
    struct Dot {
        BPoint where;
        float radius;
        rgb_color color;
    };
    struct Text {
        enum class Align { kLeft, kMiddle, kRight };
        BPoint where;  // the middle of its height, and its left end, middle or right end
        std::string text;
        rgb_color color;
        Align align = Align::kLeft;
    };

    float width = 0.0f;
    float height = 0.0f;
    rgb_color background{};
    BRect plot;  // where the lines are
    // Drawn in this order. Curves are cut at the plot, dots only drawn where they lie in it.
    std::vector<Bar> bars;
    std::vector<Curve> curves;
    std::vector<Dot> dots;
    std::vector<Bar> frame;
    std::vector<Text> texts;
};
