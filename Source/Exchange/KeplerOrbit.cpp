#include "Exchange/KeplerOrbit.h"

#include <cmath>
#include <numbers>

double KeplerOrbit::EccentricAnomaly() const {
    const double m = std::remainder(meanAnomaly, 2.0 * std::numbers::pi);
    // E lies within e of M, and E - e sin E - M grows with E: halving cannot fail, however long the
    // ellipse, and ends when the two bounds are neighbouring numbers.
    double low = m - eccentricity;
    double high = m + eccentricity;
    for (;;) {
        const double middle = 0.5 * (low + high);
        if (middle <= low || middle >= high) return middle;
        (middle - eccentricity * std::sin(middle) < m ? low : high) = middle;
    }
}

void KeplerOrbit::GetState(double mu, ThreeVector* position, ThreeVector* velocity) const {
    const double e = eccentricity;
    const double anomaly = EccentricAnomaly();
    const double cosE = std::cos(anomaly);
    const double sinE = std::sin(anomaly);
    const double minorRatio = std::sqrt((1.0 - e) * (1.0 + e));
    // In the plane of the orbit: p points to the pericentre, q a quarter turn ahead.
    const double speed = std::sqrt(mu / semiMajorAxis) / (1.0 - e * cosE);
    const double xP = semiMajorAxis * (cosE - e);
    const double xQ = semiMajorAxis * minorRatio * sinE;
    const double vP = -speed * sinE;
    const double vQ = speed * minorRatio * cosE;

    const double cosNode = std::cos(ascendingNode);
    const double sinNode = std::sin(ascendingNode);
    const double cosPeri = std::cos(pericentreArgument);
    const double sinPeri = std::sin(pericentreArgument);
    const double cosI = std::cos(inclination);
    const double sinI = std::sin(inclination);
    const ThreeVector p{cosNode * cosPeri - sinNode * sinPeri * cosI,
                        sinNode * cosPeri + cosNode * sinPeri * cosI, sinPeri * sinI};
    const ThreeVector q{-cosNode * sinPeri - sinNode * cosPeri * cosI,
                        -sinNode * sinPeri + cosNode * cosPeri * cosI, cosPeri * sinI};
    *position = p * xP + q * xQ;
    *velocity = p * vP + q * vQ;
}
