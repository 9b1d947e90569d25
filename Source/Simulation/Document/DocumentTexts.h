// Numbers of the string resources that say why a document, or a part of it, cannot be used, and why
// a run has ended by itself. The texts stand in Resources/Runner.rdef; "%1", "%2" in them are
// filled in by FillIn.
#pragma once

#include "Platform/Support/SupportDefs.h"

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
    kTextReservedID = 4013,  // %1: the body's name, as in the next two
    kTextTooLargeID = 4014,
    kTextTakenID = 4015,
    kTextKeptBeside = 4016,  // %1: a file, %2: why the document's own could not be written

    // What was lost or got on reading.
    kTextEpochEmptied = 4020,  // %1: the epoch's number, %2: its name, as in the next four; %3: why
    kTextLeftOut = 4021,       // %3: the system that is left out, %4: the one that stays
    kTextMoreLeftOut = 4022,   // %3: how many more
    kTextNumbered = 4023,      // %3: the system, %4: its new identifier
    kTextMoreNumbered = 4024,  // %3: how many more
    kTextNotAsWritten = 4025,
    kTextMoreNotices = 4026,    // %1: how many more
    kTextNoticeAndMore = 4027,  // %1: a notice, %2: how many more
    kTextGroupsTooDeep = 4028,
    kTextForeign = 4029,  // %1 and %2 as above, %3: how many, %4: the class of the first one

    // %1: time; where there is a pair %2: heavier body, %3: lighter body, %4: distance
    kTextEndsNotFinite = 4030,
    kTextEndsNotFiniteAlone = 4031,
    kTextEndsTimeStands = 4032,
    kTextEndsTimeStandsAlone = 4033,
    kTextEndsNotMerged = 4034,
    kTextEndsNothingInteracts = 4035,
    kTextEndsNoMemory = 4036,

    // Why an edit is refused.
    kTextEpochStays = 4040,
    kTextEpochsTooDeep = 4041,
};
