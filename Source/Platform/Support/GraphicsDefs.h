// Plain values of the screen: colours, points and rectangles as records store them.
#pragma once

#include "Platform/Support/SupportDefs.h"

struct rgb_color {
    uint8 red = 0;
    uint8 green = 0;
    uint8 blue = 0;
    uint8 alpha = 255;

    bool operator==(const rgb_color&) const = default;
};

struct BPoint {
    float x = 0.0f;
    float y = 0.0f;

    bool operator==(const BPoint&) const = default;
};

// The default rectangle is the invalid one: right and bottom are left of and above left and top.
struct BRect {
    float left = 0.0f;
    float top = 0.0f;
    float right = -1.0f;
    float bottom = -1.0f;

    float Width() const { return right - left; }
    float Height() const { return bottom - top; }
    bool operator==(const BRect&) const = default;
};
