// The value types: vectors, and values and vectors with their units.
#include <gtest/gtest.h>

#include <limits>

#include "DimValue.h"
#include "DimVector.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(ThreeVector, ArithmeticIsComponentwise) {
    ThreeVector v{1.0, 2.0, 3.0};
    EXPECT_EQ(v + (ThreeVector{10.0, 20.0, 30.0}), (ThreeVector{11.0, 22.0, 33.0}));
    EXPECT_EQ(v - (ThreeVector{10.0, 20.0, 40.0}), (ThreeVector{-9.0, -18.0, -37.0}));
    EXPECT_EQ(-v, (ThreeVector{-1.0, -2.0, -3.0}));
    EXPECT_EQ(0.1 * v, v * 0.1);
    v += {1.0, 1.0, 1.0};
    v -= {0.0, 1.0, 2.0};
    v *= 3.0;
    EXPECT_EQ(v, (ThreeVector{6.0, 6.0, 6.0}));
}

TEST(ThreeVector, NaNMakesItUnequalToItself) {
    for (const ThreeVector v : {ThreeVector{kNaN, 0, 0}, {0, kNaN, 0}, {0, 0, kNaN}}) {
        EXPECT_FALSE(v == v);
        EXPECT_TRUE(v != v);
    }
    EXPECT_TRUE((ThreeVector{0.0, 0.0, 0.0} == ThreeVector{-0.0, 0.0, 0.0}));
    EXPECT_TRUE((ThreeVector{0.0, 0.0, 1.0} != ThreeVector{}));
}

TEST(DimValue, KeepsItsUvalWhenAnInvalidOneIsSet) {
    for (const double bad : {0.0, -3.0, kInfinity, -kInfinity, kNaN}) {
        EXPECT_EQ(DimValue(5.0, bad).Uval(), 1.0);
        EXPECT_EQ(DimVector(1.0, 2.0, 3.0, bad).Uval(), 1.0);
        DimValue value(5.0, 1.49e11);
        value.SetUval(bad);
        EXPECT_EQ(value.Uval(), 1.49e11);
        DimVector vector(ThreeVector{1.0, 2.0, 3.0}, 1.49e11);
        vector.SetUval(bad);
        EXPECT_EQ(vector.Uval(), 1.49e11);
    }
}

TEST(DimValue, AChangeOfUnitIsAChange) {
    EXPECT_TRUE(DimValue(1.0, 2.0) == DimValue(1.0, 2.0));
    EXPECT_TRUE(DimValue(1.0, 2.0) != DimValue(1.0, 3.0));
    EXPECT_TRUE(DimValue(1.0, 2.0) != DimValue(2.0, 2.0));
    const DimVector vector(1.0, 2.0, 3.0, 4.0);
    EXPECT_TRUE(vector == DimVector(1.0, 2.0, 3.0, 4.0));
    EXPECT_TRUE(vector != DimVector(1.0, 2.0, 3.0, 5.0));
    EXPECT_TRUE(vector != DimVector(1.0, 2.0, 3.5, 4.0));
}

}  // namespace
