// Numbers of the texts by which entries answer what they cannot take
// (Resources/SettingsFeatures.rdef).
#pragma once

#include "Platform/Support/SupportDefs.h"

enum EntryText : int32 {
    kTextNotANumber = 3600,
    kTextUnknownUnit = 3601,
    kTextOutOfRange = 3602,
    kTextNameNeeded = 3603,
    kTextUnit = 3604,  // what a screen reader adds to the name of a unit menu
    kTextUnitsAre = 3614,
    kTextBetweenUnits = 3615,
};
