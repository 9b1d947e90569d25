// Codes of the messages about kept runs, for the simulation's window.
#pragma once

#include "Platform/Support/SupportDefs.h"

inline constexpr uint32 kMakeRunAgain = FourCC("mkrn");
inline constexpr uint32 kStopMaking = FourCC("spmk");
// How far two runs are apart, that a display compares: string "Text", empty if none are.
inline constexpr uint32 kTellSeparation = FourCC("tlsp");
inline constexpr uint32 kSaveHistory = FourCC("svhs");
