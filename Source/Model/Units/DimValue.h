// Numbers and vectors in base units together with their Uval: the factor of the unit they are shown
// in (shown number = value / Uval). Plain values; the Uval is always positive and finite.
#pragma once

#include <cmath>
#include <limits>

#include "Model/Systems/ThreeVector.h"

// The rule for every unit factor of the model.
inline bool IsValidUval(double uval) {
    return uval > 0.0 && uval < std::numeric_limits<double>::infinity();
}

// What the user may enter, in base units: far beyond everything that there is, and small enough
// that squares and cubes of it, and sums of these, are finite. False for NaN.
inline bool CanBeEntered(double value) {
    return std::fabs(value) <= 1e100;
}

class DimValue {
public:
    // An invalid Uval leaves 1.0.
    DimValue(double value, double uval) : value_(value) { SetUval(uval); }

    double Value() const { return value_; }
    void SetValue(double value) { value_ = value; }
    double Uval() const { return uval_; }
    // Ignores an invalid Uval.
    void SetUval(double uval) {
        if (IsValidUval(uval)) uval_ = uval;
    }

private:
    double value_;
    double uval_ = 1.0;
};

// A change of unit alone is a change.
inline bool operator==(const DimValue& a, const DimValue& b) {
    return a.Value() == b.Value() && a.Uval() == b.Uval();
}

// A vector likewise, which serves wherever a ThreeVector is wanted.
class DimVector : public ThreeVector {
public:
    // An invalid Uval leaves 1.0.
    DimVector(ThreeVector v, double uval) : ThreeVector(v) { SetUval(uval); }
    DimVector(double vx, double vy, double vz, double uval) : ThreeVector{vx, vy, vz} {
        SetUval(uval);
    }

    double Uval() const { return uval_; }
    // Ignores an invalid Uval.
    void SetUval(double uval) {
        if (IsValidUval(uval)) uval_ = uval;
    }

private:
    double uval_ = 1.0;
};

inline bool operator==(const DimVector& a, const DimVector& b) {
    return static_cast<const ThreeVector&>(a) == static_cast<const ThreeVector&>(b) &&
           a.Uval() == b.Uval();
}
