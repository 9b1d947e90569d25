// What a Subject tells its observers: a mask of what changed. The sender chooses the bits, each
// observer picks those that concern what it shows.
#pragma once

#include "Platform/Support/SupportDefs.h"

// Data of mass systems. A quantity's bit also stands for the unit it is shown in.
inline constexpr int32 kNameChanged = 0x1;
inline constexpr int32 kTrailChanged = 0x2;
inline constexpr int32 kDiscChanged = 0x4;
inline constexpr int32 kPositionChanged = 0x8;
inline constexpr int32 kVelocityChanged = 0x10;
// An edit of a mass may reorder the bodies: tell kPositionChanged with it.
inline constexpr int32 kMassOrRadiusChanged = 0x20;
inline constexpr int32 kBodyDataChanged = 0x3f;  // all of the above

// Data of the focus epoch.
inline constexpr int32 kTimeChanged = 0x40;
inline constexpr int32 kEpochSettingsChanged = 0x80;  // also whether it is read-only
inline constexpr int32 kEpochRenamed = 0x100;
inline constexpr int32 kReferentChanged = 0x200;  // what a system is shown relative to

// What the epoch and the tree hold, and what is in focus.
inline constexpr int32 kSystemRemoved = 0x400;
inline constexpr int32 kSystemAdded = 0x800;
inline constexpr int32 kEpochRemoved = 0x1000;
inline constexpr int32 kEpochAdded = 0x2000;
inline constexpr int32 kFocusSystemChanged = 0x4000;
inline constexpr int32 kFocusEpochChanged = 0x8000;

// Segment length and update rate of the calculator.
inline constexpr int32 kCalculatorSettingsChanged = 0x10000;

// Nothing has changed: an edit was refused that would have nested epochs too deeply.
inline constexpr int32 kEpochsTooDeep = 0x20000;

// Another moment of the kept runs is shown (ShownMoment); the model is as it was.
inline constexpr int32 kMomentChanged = 0x40000;

// The calculator has parked: it moved the bodies and the time.
inline constexpr int32 kCalculatorParked = kPositionChanged | kVelocityChanged | kTimeChanged;
// Another epoch is in focus: everything shown may differ, the tree is as it was.
inline constexpr int32 kAllOfFocusChanged = 0xCFFF;
// The focus went to a copy of the epoch that had it.
inline constexpr int32 kFocusMovedToCopy = kFocusEpochChanged | kPositionChanged | kVelocityChanged;

static_assert(kCalculatorParked == 0x58 && kFocusMovedToCopy == 0x8018);
static_assert(kAllOfFocusChanged == (kBodyDataChanged | kTimeChanged | kEpochSettingsChanged |
                                     kEpochRenamed | kReferentChanged | kSystemRemoved |
                                     kSystemAdded | kFocusSystemChanged | kFocusEpochChanged));
