// Codes of the messages about kept runs, for the simulation's window.
#pragma once

#include "Platform/Support/SupportDefs.h"

inline constexpr uint32 kMakeRunAgain = FourCC("mkrn");
inline constexpr uint32 kStopMaking = FourCC("spmk");
// How far two runs are apart, that a display compares: string "Text", empty if none are.
inline constexpr uint32 kTellSeparation = FourCC("tlsp");
// How far the run that led here can be believed: say so; make it again more exactly; look for chaos
// in it. The last two also end what they have begun.
inline constexpr uint32 kShowTrust = FourCC("shtr");
inline constexpr uint32 kRerunExactly = FourCC("rrex");
inline constexpr uint32 kLookForChaos = FourCC("lkch");
inline constexpr uint32 kSaveHistory = FourCC("svhs");
