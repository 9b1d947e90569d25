// What the steps of the history are called: numbers of texts (Resources/SimulationFeatures.rdef),
// so that "Undo" and "Redo" can tell what they do.
#pragma once

#include "Platform/Support/SupportDefs.h"

enum CommandName : int32 {
    kUnnamedCommand = 0,
    kCommandSetName = 3720,
    kCommandSetMass = 3721,
    kCommandSetRadius = 3722,
    kCommandSetPosition = 3723,
    kCommandSetVelocity = 3724,
    kCommandSetRelativeTo = 3725,
    kCommandSetTrail = 3726,
    kCommandSetDisc = 3727,
    kCommandNewBody = 3728,
    kCommandDeleteBody = 3729,
    kCommandGroup = 3730,
    kCommandDissolveGroup = 3731,
    kCommandCenterOfMass = 3732,
    kCommandSetTime = 3733,
    kCommandSetCutoff = 3734,
    kCommandSetOrder = 3735,
    kCommandSetCenterOnGo = 3736,
    kCommandSetAnimation = 3737,
    kCommandGoToEpoch = 3738,
    kCommandNameEpoch = 3739,
    kCommandDeleteEpoch = 3740,
    kCommandLogEpoch = 3741,
    kCommandGo = 3742,
};
