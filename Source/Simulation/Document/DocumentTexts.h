// Numbers of the string resources that say why a document cannot be used. The texts stand in
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
    kTextBadTime = 4008,  // %1: the epoch's name, as in the next two
    kTextBadCalculatorState = 4009,
    kTextNoSystem = 4010,
    kTextNotAFile = 4011,
    kTextTooLarge = 4012,
};
