// Numbers of the texts that the program prints (Resources/DisplayFeatures.rdef). Gaps in them are
// filled by FillIn.
#pragma once

#include "SupportDefs.h"

enum ProgramText : int32 {
    kTextProgramHelp = 3400,
    kTextProgramVersion = 3401,  // %1: the version
    kTextProgramUsage = 3402,    // %1: the option that there is not
    kTextCannotOpen = 3403,      // %1: the file, %2: why
};
