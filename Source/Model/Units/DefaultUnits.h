// The units that quantities are shown in where a document names none: factors in SI units (masses
// as GM). Set at start-up by whoever reads the user's preferences, read-only while documents are
// open.
#pragma once

extern double POSITION_UVAL_PREF;  // m
extern double SPEED_UVAL_PREF;     // m/s
extern double MASS_UVAL_PREF;      // m3/s2
extern double RADIUS_UVAL_PREF;    // m
extern double TIME_UVAL_PREF;      // s
