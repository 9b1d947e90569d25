// Codes of the messages about kept runs, for the simulation's window.
#pragma once

#include "Platform/Support/SupportDefs.h"

inline constexpr uint32 kMakeRunAgain = FourCC("mkrn");
inline constexpr uint32 kStopMaking = FourCC("spmk");
inline constexpr uint32 kSaveHistory = FourCC("svhs");
