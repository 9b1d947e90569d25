// Numbers of the texts that the program prints (Resources/DisplayFeatures.rdef), and those of the
// application's boxes (Resources/ApplicationFeatures.rdef). Gaps in them are filled by FillIn.
#pragma once

#include "Platform/Support/SupportDefs.h"

enum ProgramText : int32 {
    kTextProgramHelp = 3400,
    kTextProgramVersion = 3401,  // %1: the version
    kTextProgramUsage = 3402,    // %1: the option that there is not

    kTextRecoveryTitle = 3502,
    kTextRecovery = 3503,  // %1: the document, %2: day and time of the copy
    kTextDiscard = 3504,
    kTextLater = 3505,
    kTextRecover = 3506,
    kTextNoDisplay = 3507,
    kTextNotFoundTitle = 3508,
    kTextNotFound = 3509,         // %1: the document
    kTextMoreNotOpened = 3510,    // %1: what could not be opened and why, %2: how many more
    kTextRecoveryUnsaved = 3511,  // %1: the document, %2: why
};
