// How much of its trails a display shows: all, those of a time, or so many turns of each body. A
// plain value.
#pragma once

struct TrailLength {
    double time = 0.0;   // s; 0: not limited by time
    double turns = 0.0;  // of the direction in which a body is seen to move; 0: not limited by them
    bool isFading = true;  // towards the older end, if there is a limit

    [[nodiscard]] bool IsLimited() const { return time > 0.0 || turns > 0.0; }
    bool operator==(const TrailLength&) const = default;
};
