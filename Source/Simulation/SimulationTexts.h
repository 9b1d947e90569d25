// Numbers of the texts of a simulation's window (Resources/SimulationFeatures.rdef). Gaps in them
// are filled by FillIn.
#pragma once

#include "Platform/Support/SupportDefs.h"

enum SimulationText : int32 {
    kTextSaveAsAfter = 3700,
    kTextAtTime = 3701,
    kTextNoBodies = 3702,
    kTextOneBody = 3703,
    kTextBodies = 3704,       // %1: how many
    kTextStepRate = 3705,     // %1: a number
    kTextTimeRate = 3706,     // %1: a number, %2: a unit of time
    kTextEnergyError = 3707,  // %1: a number
    kTextBetweenFigures = 3708,
    kTextMerger = 3709,  // %1: the absorbed body, %2: the survivor
    kTextSaved = 3710,
    kTextNotSaved = 3711,       // %1: the file, %2: why
    kTextNotEvenCopied = 3712,  // %1: the file, %2: why, %3: why there is no copy
    kTextNotOpened = 3713,      // %1: the file, %2: why
    kTextPrinted = 3714,        // %1: one of the three before
    kTextManyMergers = 3715,    // %1: the first merger, %2: how many more
    kTextUndo = 3716,           // %1: the step's name, as in the next one
    kTextRedo = 3717,
    kTextTrailDiscKey = 3718,
    // 3719, 3743: keys that every window has (InterfaceLabels.h)
    // 3720-3742: names of commands (CommandNames.h)
    kTextProjectionKey = 3744,
    kTextStatusMessage = 3745,
    kTextStatusFigures = 3746,
    kTextNotCopied = 3747,  // %1: the document, %2: why
    kTextGroup = 3748,
    kTextDissolveGroup = 3749,
    kTextGroupTitle = 3750,
    kTextGroupName = 3751,
    kTextGroupOf = 3752,
    kTextGroupButton = 3753,
    kTextOpenedWith = 3754,        // %1: the file, %2: what is not as it was
    kTextOpenDisplays = 3755,      // the menu's item
    kTextWaitingDisplays = 3756,   // %1: how many
    kTextSavedAndTidied = 3790,    // %1: how many files
    kTextChangedByAnother = 3757,  // %1: the file
    kTextAnotherWindow = 3758,     // %1: the document, %2: which of its windows this is
};
