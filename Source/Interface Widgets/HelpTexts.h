// Numbers of the texts of the guide and the examples (Resources/Help.rdef).
#pragma once

#include "Platform/Support/SupportDefs.h"

enum HelpText : int32 {
    kTextHelp = 3900,
    kTextGuide = 3901,
    kTextGuideTitle = 3902,
    kTextNoGuide = 3903,  // %1: where it was looked for
    kTextOpenExample = 3904,
    kTextGuideContents = 3905,
};
