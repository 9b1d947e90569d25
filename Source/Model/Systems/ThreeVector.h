// A position, velocity or displacement in three dimensions, in base units (metres, m/s). A plain
// value without invariant, passed and copied freely.
#pragma once

#include <cmath>

struct ThreeVector {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    ThreeVector operator+(const ThreeVector& v) const { return {x + v.x, y + v.y, z + v.z}; }
    ThreeVector operator-(const ThreeVector& v) const { return {x - v.x, y - v.y, z - v.z}; }
    ThreeVector operator-() const { return {-x, -y, -z}; }
    ThreeVector& operator+=(const ThreeVector& v) { return *this = *this + v; }
    ThreeVector& operator-=(const ThreeVector& v) { return *this = *this - v; }
    ThreeVector& operator*=(double factor) {
        x *= factor;
        y *= factor;
        z *= factor;
        return *this;
    }
};

inline ThreeVector operator*(const ThreeVector& v, double factor) {
    return {v.x * factor, v.y * factor, v.z * factor};
}

inline ThreeVector operator*(double factor, const ThreeVector& v) {
    return v * factor;
}

// Exact: a vector with a NaN component is unequal to every vector, itself included.
inline bool operator==(const ThreeVector& a, const ThreeVector& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline double Dot(const ThreeVector& a, const ThreeVector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline ThreeVector Cross(const ThreeVector& a, const ThreeVector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double Length(const ThreeVector& v) {
    return std::sqrt(Dot(v, v));
}

inline bool IsFinite(const ThreeVector& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}
