// The fields of a projection display in a document: those that every reader knows, and those that
// older ones skip. No state, any thread.
#pragma once

#include "Displays/Hands/MeasuredPair.h"
#include "Displays/Projection/DisplayMenus.h"
#include "Displays/Projection/Projection.h"
#include "Displays/Projection/ViewFrame.h"
#include "Displays/Trajectories/TrailSource.h"
#include "Model/Systems/MassSystem.h"
#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/GraphicsDefs.h"

class BMessage;

// Where a dialog is that was never placed.
inline constexpr BPoint kNeverPlaced{16000.0f, 16000.0f};

struct ProjectionFields {
    Projection projection;
    double units = 1.0;   // m, of the scale dialog's length
    int32 reference = 3;  // ScaleBox::Reference
    BPoint axisAt = kNeverPlaced;
    BPoint scaleAt = kNeverPlaced;
    DisplayOptions options;
    int64 followed = kNoSystemID;  // kRootSystemID: the centre of mass
    TurningPair pair;
    TrailLength trail;
    MeasuredPair measured;

    // A field of the newer ones is written only where it is not as usual.
    [[nodiscard]] status_t Write(BMessage* archive) const;
    // What is not there stays as it is; ranges are not checked. The status of finding "Units".
    status_t Read(const BMessage& archive);
    static void DescribeFields(FieldDescriptions* into);
};
