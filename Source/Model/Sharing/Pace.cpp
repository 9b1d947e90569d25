#include "Model/Sharing/Pace.h"

#include <algorithm>

Pace Pace::Of(double secondsPerSecond) {
    return Pace(std::clamp(secondsPerSecond, kMin, kMax));
}

bool Pace::IsNumber(double number) {
    return number == 0.0 || number == kAuto || (number >= kMin && number <= kMax);
}
