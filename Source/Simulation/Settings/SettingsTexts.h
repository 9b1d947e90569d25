// Numbers of the texts of this folder's views (Resources/SettingsFeatures.rdef); entries have some
// of their own before them.
#pragma once

#include "Platform/Support/SupportDefs.h"

enum SettingsText : int32 {
    kTextPreview = 3605,  // for screen readers
    kTextGoTip = 3606,
    kTextCenterTip = 3607,
    kTextUponGoTip = 3608,
    kTextCutoffTip = 3609,
    kTextOrderTip = 3610,
    kTextQuantityTip = 3611,
    kTextRelativeTip = 3612,
    kTextGroupTip = 3613,
};
