// Message codes that the platform defines.
#pragma once

#include "Platform/Support/SupportDefs.h"

inline constexpr uint32 B_ABOUT_REQUESTED = FourCC("_ABR");
inline constexpr uint32 B_QUIT_REQUESTED = FourCC("_QRQ");
// The user's session or the program's process is about to end: quit without asking. Of this kit.
inline constexpr uint32 B_SESSION_ENDING = FourCC("_SEN");
inline constexpr uint32 B_READY_TO_RUN = FourCC("_RTR");
inline constexpr uint32 B_ARGV_RECEIVED = FourCC("_ARG");
inline constexpr uint32 B_REFS_RECEIVED = FourCC("_RRC");
inline constexpr const char* kRefsField = "refs";
inline constexpr uint32 B_CANCEL = FourCC("_CNC");
inline constexpr uint32 B_PULSE = FourCC("_PUL");
inline constexpr uint32 B_SAVE_REQUESTED = FourCC("SAVE");
inline constexpr uint32 B_ARCHIVED_OBJECT = FourCC("ARCV");
inline constexpr uint32 B_REPLY = FourCC("RPLY");
inline constexpr uint32 B_NO_REPLY = FourCC("NONE");
inline constexpr uint32 B_MESSAGE_NOT_UNDERSTOOD = FourCC("MNOT");
