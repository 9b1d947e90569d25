// Systems of bodies for the tests of the series stepper, and a reference that integrates them
// with twice the digits.
#pragma once

#include <vector>

#include "Calculation/Series/SeriesStepper.h"
#include "Platform/Support/SupportDefs.h"

struct PointBody {
    ThreeVector position;  // m
    ThreeVector velocity;  // m/s
    double gm = 0.0;       // m3/s2
};

using PointSystem = std::vector<PointBody>;

constexpr double kAstronomicalUnit = 1.495978707e11;
constexpr double kSolarGM = 1.32712440041e20;
constexpr double kYear = 3.15576e7;

// Three equal bodies that chase each other on one path.
PointSystem FigureEight();
// A pair that starts nearest to each other, one astronomical unit apart on average.
PointSystem KeplerPair(double eccentricity);
// Sun and outer planets on 5 September 1994, from Hairer, Lubich and Wanner, Geometric Numerical
// Integration, I.2.4: the Sun with the inner planets, Jupiter, Saturn, Uranus, Neptune, Pluto.
PointSystem OuterPlanets();
// A sun with planets on orbits of different sizes and planes.
PointSystem Planets(int32 count);
// Bodies of different masses that move about in a ball; the first ones massive, the others not.
PointSystem Cluster(int32 count, int32 massive);

void Load(const PointSystem& system, SeriesStepper* stepper, int32 order);
// In the order of the bodies' indices.
PointSystem StateAt(SeriesStepper* stepper, double theta);
// Steps to the first one that ends at or past `time`, and evaluates there. Empty when a step
// failed.
PointSystem RunTo(SeriesStepper* stepper, double time);

// By Taylor series of order 26 in arithmetic of 33 digits, in `steps` equal steps: nothing of it is
// shared with what it checks.
PointSystem Reference(const PointSystem& system, double time, int32 steps);

// The greatest distance between two states of a body, against the system's size.
double PositionError(const PointSystem& a, const PointSystem& b);
// The greatest error of an acceleration in the middle of a step and elsewhere in it, against that
// which the bodies' places make.
double ForceError(SeriesStepper* stepper, double theta);
