#include "Model/Units/DefaultUnits.h"

double POSITION_UVAL_PREF = 149597870660.0;  // astronomical unit
double SPEED_UVAL_PREF = 1731456.8363;       // astronomical unit per day
double MASS_UVAL_PREF = 1.3271244e20;        // solar mass
double RADIUS_UVAL_PREF = 6378137.0;         // Earth radius
double TIME_UVAL_PREF = 31556925.2;          // year
