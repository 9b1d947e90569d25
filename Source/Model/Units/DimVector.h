// A vector in base units together with its Uval, the factor of the unit it is shown in. A plain
// value that serves wherever a ThreeVector is wanted.
#pragma once

#include "Model/Systems/ThreeVector.h"
#include "Model/Units/DimValue.h"

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
