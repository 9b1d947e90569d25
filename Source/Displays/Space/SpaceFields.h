// The fields of a space display in a document. No state, any thread.
#pragma once

#include "Displays/Hands/MeasuredPair.h"
#include "Displays/Space/Camera.h"
#include "Displays/Space/SpaceOptions.h"
#include "Model/Systems/MassSystem.h"
#include "Platform/Application/FieldDescription.h"

class BMessage;

struct SpaceFields {
    Camera camera;
    SpaceOptions options;
    int64 followed = kNoSystemID;  // kRootSystemID: the centre of mass
    MeasuredPair measured;

    [[nodiscard]] status_t Write(BMessage* archive) const;
    // What is not there stays as it is; a camera that is none becomes one. False: there was none.
    bool Read(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);
};
