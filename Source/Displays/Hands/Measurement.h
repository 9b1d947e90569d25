// The line between two bodies in a display, and beside it how far apart they are, how fast one
// moves as seen from the other, and their angle as seen from a third: the body that is followed, or
// else the heaviest other one. Owned by the display's hands, and used with the display's lock.
#pragma once

#include <string>
#include <vector>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Hands/HandSystem.h"
#include "Displays/Hands/MeasuredPair.h"
#include "Platform/Interface/Canvas/CanvasView.h"

class BMessage;
class HandSight;
class ShownModel;

class Measurement {
public:
    // None is owned.
    Measurement(const ShownModel* shown, HandSight* sight, const DisplayContext& context)
        : shown_(shown), sight_(sight), context_(context) {}

    void SetView(CanvasView* view) { view_ = view; }

    // A message of the menu; false for any other. From the selected body, or where that is the
    // other end, from the followed one or the heaviest.
    [[nodiscard]] bool Handle(const BMessage& message, const HandSystem& system, int64 selected);
    // A click on a body, in mass order; true: it is the other end that was asked for.
    [[nodiscard]] bool TakeClick(int32 body, int64 selected);
    // Gives up waiting for a click; false: it did not.
    bool StopWaiting();

    // In a system at rest, or one without bodies while a run is on.
    void AddOverlay(const HandSystem& system, std::vector<OverlayItem>* items) const;

private:
    void MeasureTo(int64 body, int64 selected);
    [[nodiscard]] int32 IndexOf(int64 id) const;
    [[nodiscard]] int32 FindThird() const;
    [[nodiscard]] std::string MakeText(const MeasuredValues& values, int32 third) const;

    const ShownModel* const shown_;
    HandSight* const sight_;
    const DisplayContext& context_;
    CanvasView* view_ = nullptr;
    bool isWaiting_ = false;
    // In which the user reads the first body's place and velocity.
    double distanceUval_ = POSITION_UVAL_PREF;
    double speedUval_ = SPEED_UVAL_PREF;
};
