// What there is in one direction, and which part of it is shown, in pixels. A plain value.
#pragma once

struct ScrollRange {
    double low = 0.0;
    double high = 0.0;
    double shownLow = 0.0;
    double shownHigh = 0.0;

    bool operator==(const ScrollRange&) const = default;
};
