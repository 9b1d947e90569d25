#include "Model/Units/FittingUnit.h"

#include "Model/Units/QuantityText.h"

namespace {

// A value of fewer of a unit is shown in a smaller one.
constexpr double kMinUnits = 0.01;

}  // namespace

const UnitInfo* FittingUnit(const UnitTable& units, double value) {
    const UnitInfo* fitting = nullptr;
    for (const UnitInfo& unit : units.Rows()) {
        const bool fits = unit.factor <= value;
        if (fitting == nullptr || (fits ? unit.factor > fitting->factor || fitting->factor > value
                                        : unit.factor < fitting->factor))
            fitting = &unit;
    }
    return fitting;
}

std::string InFittingUnit(const UnitTable& units, double value, int digits) {
    const UnitInfo* const unit = FittingUnit(units, value);
    if (unit == nullptr) return print_double(value, digits);
    return print_double(value / unit->factor, digits) + ' ' + unit->abbreviation;
}

double SmallerUnit(double value, double uval) {
    for (const double unit : {uval, 1000.0})
        if (value >= kMinUnits * unit) return unit;
    return 1.0;
}
