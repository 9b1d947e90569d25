// One unit that a quantity can be shown in. A plain value.
#pragma once

#include <string>

struct UnitInfo {
    std::string name;
    std::string abbreviation;
    // One such unit in SI units (masses as GM in m3/s2); positive and finite.
    double factor = 1.0;
};
