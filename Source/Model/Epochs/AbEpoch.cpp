#include "Model/Epochs/AbEpoch.h"

Body AbEpoch::origin("Origin", kOriginID, DEFAULT_TRAIL_DISC_COLOR, DEFAULT_TRAIL_DISC_COLOR,
                     kNoSystemID);
