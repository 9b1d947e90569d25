// The dialogs of a projection display: for its axis, its scale and the length of its trails. Owned
// and used by the display, on its thread; AddPlaces by whoever holds its lock.
#pragma once

#include <optional>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Projection/ProjectionFields.h"
#include "Displays/Projection/RequesterSlot.h"

class BMessage;
class Display;

class ProjectionDialogs {
public:
    // They show what the fields hold, and leave there where they stood. Nothing is owned.
    ProjectionDialogs(Display* display, ProjectionFields* fields, const DisplayContext& context)
        : display_(display), fields_(fields), context_(context) {}

    void RequestAxis();
    // False if there is none.
    bool CancelAxis();
    void CancelAll();
    void RequestTrail();
    bool CancelTrail() { return trail_.Close(&trailAt_); }
    void RequestScale();
    bool CancelScale();
    // What the dialog for the scale has come to: it is closed, the fields have what was chosen
    // beside the scale, and the scale is the answer, if it is another one.
    std::optional<double> TakeScale(const BMessage& message);
    // The owner's unit of length, until the user has chosen one in the dialog.
    void SetPreferredUnits(const BMessage& message);
    // For what the display itself says.
    [[nodiscard]] double LengthUnit() const;

    // The display has another scale: a dialog that is open would bring back the one that it was
    // opened with.
    void TellScale() const;
    // The scale dialog's figures follow the display's size, at the next pulse.
    void Resized() { isResized_ = true; }
    void Pulse();

    // Where they stand now.
    void AddPlaces(ProjectionFields* fields) const;

private:
    Display* const display_;
    ProjectionFields* const fields_;
    const DisplayContext& context_;
    RequesterSlot axis_;
    RequesterSlot scale_;
    RequesterSlot trail_;
    BPoint trailAt_ = kNeverPlaced;  // it is in no document
    bool areUnitsChosen_ = false;
    bool isResized_ = false;
};
