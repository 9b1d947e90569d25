// What stands over a canvas and does not belong to its picture: a text or a scale bar. Plain
// values.
#pragma once

#include <string>

#include "Platform/Support/GraphicsDefs.h"

struct OverlayItem {
    enum class Kind {
        kText,
        kBar,  // a horizontal line with a tick at each end, the text above its middle
    };
    // What `where` is counted from: a point of the canvas (x right, y down), or inward from a
    // corner of the view. Texts grow away from that corner; at kCanvas to the right, above the
    // point.
    enum class Anchor { kCanvas, kLeftTop, kRightTop, kLeftBottom, kRightBottom };

    Kind kind = Kind::kText;
    Anchor anchor = Anchor::kLeftTop;
    BPoint where;
    std::string text;
    rgb_color color{230, 230, 230, 255};
    float length = 0.0f;  // of a bar, in logical pixels

    bool operator==(const OverlayItem&) const = default;
};
