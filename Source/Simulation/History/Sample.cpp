#include "Simulation/History/Sample.h"

#include <cmath>

Sample Between(const Sample& a, const Sample& b, double time) {
    const double length = b.time - a.time;
    if (length == 0.0) return b;
    // From 0 to 1, as a part of the way; from the nearer end, so that the ends come out exactly.
    const bool isNearB = std::fabs(time - a.time) > std::fabs(b.time - time);
    const Sample& near = isNearB ? b : a;
    const Sample& far = isNearB ? a : b;
    const double span = isNearB ? -length : length;
    const double s = (time - near.time) / span;
    const double s2 = s * s;
    const ThreeVector way = far.position - near.position;
    const ThreeVector start = span * near.velocity;
    const ThreeVector end = span * far.velocity;
    // p = s start + s^2 (3 way - 2 start - end) + s^3 (start + end - 2 way)
    const ThreeVector square = 3.0 * way - 2.0 * start - end;
    const ThreeVector cube = start + end - 2.0 * way;
    return {time, near.position + s * start + s2 * square + s2 * s * cube,
            near.velocity + (1.0 / span) * (2.0 * s * square + 3.0 * s2 * cube), true};
}
