// Numbers of the string resources that say why a document cannot be used, and why a run has ended
// by itself. The texts stand in
// Resources/Runner.rdef; "%1", "%2" in them are filled in by FillIn.
#pragma once

#include "SupportDefs.h"

enum DocumentText : int32 {
    kTextNotADocument = 4000,
    kTextDamaged = 4001,
    kTextNestedTooDeeply = 4002,
    kTextNoEpoch = 4003,
    kTextBadPosition = 4004,  // %1: the body's name, as in the next three
    kTextBadVelocity = 4005,
    kTextBadMass = 4006,
    kTextBadRadius = 4007,
    kTextBadTime = 4008,  // %1: the epoch's name, as in the next one
    kTextNoSystem = 4010,
    kTextNotAFile = 4011,
    kTextTooLarge = 4012,

    // %1: time; where there is a pair %2: heavier body, %3: lighter body, %4: distance
    kTextEndsNotFinite = 4030,
    kTextEndsNotFiniteAlone = 4031,
    kTextEndsTimeStands = 4032,
    kTextEndsTimeStandsAlone = 4033,
    kTextEndsNotMerged = 4034,
    kTextEndsNothingInteracts = 4035,
};
