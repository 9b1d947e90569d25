// One application whose preferences are in use: an entry of the process's list of them. Guarded by
// the store's lock.
#pragma once

#include <string>

#include "Platform/Support/SupportDefs.h"

struct PREFHandle {
    PREFHandle* next;
    const std::string application;
    int32 references;
};
