// Numbers of the texts of the epoch window (Resources/EpochFeatures.rdef). Gaps in them are filled
// by FillIn.
#pragma once

#include "Platform/Support/SupportDefs.h"

enum EpochText : int32 {
    kTextEpochList = 3800,
    kTextNameColumn = 3801,
    kTextTimeColumn = 3802,
    kTextBodiesColumn = 3803,
    kTextStateColumn = 3804,
    kTextCurrentState = 3805,  // %1: the state
    kTextTime = 3806,          // %1: a number, %2: its unit
    kTextReadOnlyTip = 3807,
    kTextWriteableTip = 3808,
    kTextRestoreEpoch = 3809,
    kTextRenameEpoch = 3810,
    kTextRunColumn = 3811,
    kTextLengthColumn = 3812,
};
