// Numbers of the runner's string resources (Resources/Runner.rdef). "%1", "%2", ... in the texts
// are filled in by FillIn.
#pragma once

#include "Platform/Support/SupportDefs.h"

enum RunnerText : int32 {
    // An interface label: the name of a simulation without a file.
    kTextTemplateName = 1500,

    // Usage.
    kTextHelp = 4100,            // %1: steps of a run without a limit, %2: 4111 or nothing
    kTextVersion = 4101,         // %1: version
    kTextFailure = 4102,         // %1: file, %2: reason
    kTextUsage = 4103,           // %1: what is wrong
    kTextUnknownOption = 4104,   // %1: option
    kTextMissingValue = 4105,    // %1: option
    kTextBadValue = 4106,        // %1: option, %2: value
    kTextSecondDocument = 4107,  // %1: document
    kTextTwoOutputs = 4108,
    kTextUnwantedValue = 4109,  // %1: option
    kTextNoPictures = 4110,
    kTextNotInThisBuild = 4111,
    kTextCheckpointNeedsSave = 4112,
    kTextNotWithResume = 4113,  // %1: what the run has settled

    // Before a run.
    kTextSameFile = 4120,
    kTextHistoricalOrder = 4122,  // %1: order

    kTextNoRun = 4123,
    kTextRunDoesNotFit = 4124,
    kTextOtherReports = 4125,
    kTextOtherEvery = 4126,
    kTextStillWriting = 4127,

    // During a run.
    kTextNoCheckpoint = 4132,   // %1: file, %2: reason
    kTextLeftovers = 4133,      // %1: count, %2: file beside which they lay
    kTextStepsProgress = 4130,  // %1: steps, %2: steps in all, %3: steps per second, %4: time left
    kTextTimeProgress =
        4131,  // %1: time, %2: time in all, %3: unit, %4: steps per second, %5: time left

    // The summary, line by line.
    kTextSummaryDocument = 4140,   // %1: document, %2: epoch
    kTextSummaryTime = 4141,       // %1: start, %2: end, %3: unit
    kTextSummarySteps = 4142,      // %1: steps, %2: seconds, %3: steps per second
    kTextSummaryBodies = 4143,     // %1: bodies, %2: those with mass
    kTextSummaryEnergy = 4144,     // %1: relative error
    kTextSummaryMomentum = 4145,   // %1: relative drift
    kTextSummaryAngular = 4146,    // %1: relative drift
    kTextSummaryDigest = 4147,     // %1: hexadecimal digits
    kTextSummaryCollision = 4148,  // %1, %2: bodies, %3: time, %4: unit
    kTextSummaryInterrupted = 4149,
    kTextUndefined = 4150,       // in place of a number that has no meaning for this document
    kTextMerger = 4151,          // %1: survivor, %2: absorbed, %3: time, %4: unit
    kTextSummaryMergers = 4152,  // %1: count, %2: kinetic energy lost
    kTextRunEnded = 4153,        // %1: one of the texts of DocumentTexts.h

    // What is wrong with an edit.
    kTextEdit = 4160,          // %1: the edit, %2: what is wrong with it
    kTextEditNoValue = 4161,   // without "="
    kTextEditNoSystem = 4162,  // %1: name
    kTextEditNoField = 4163,   // %1: field, %2: system
    kTextEditNoNumber = 4164,  // %1: value
    kTextEditNoUnit = 4165,    // %1: value
    kTextEditNoColor = 4166,   // %1: value
    kTextEditNoSwitch = 4167,  // %1: value
    kTextEditRefused = 4168,
    kTextEditUnwanted = 4169,   // %1: value
    kTextEditNoMembers = 4180,  // %1: value
    kTextEditNoEpoch = 4181,    // %1: number or name
    kTextEditNothingToDo = 4182,

    // The epoch tree.
    kTextEpochLine = 4170,  // %1: name, %2: time, %3: state, %4: bodies, %5: mark of the focus,
                            // %6: number
    kTextEpochWriteable = 4171,
    kTextEpochReadOnly = 4172,
    kTextEpochFocus = 4173,
};
