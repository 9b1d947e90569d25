// What hands need of the display that they are in. Displays implement it; used with the display's
// lock. Places are in the frame that the display shows, m; points are those of its canvas.
#pragma once

#include <optional>

#include "Displays/Hands/HandPlane.h"
#include "Displays/Hands/MeasuredPair.h"
#include "Platform/Support/GraphicsDefs.h"

class HandSight {
public:
    virtual ~HandSight() = default;

    // Nothing: it is not seen, as behind the eye.
    [[nodiscard]] virtual std::optional<BPoint> PointOf(const ThreeVector& place) const = 0;
    [[nodiscard]] virtual HandPlane PlaneThrough(const ThreeVector& place) const = 0;
    // What is seen there, as far away as what is followed.
    [[nodiscard]] virtual ThreeVector PlaceAt(BPoint point) const = 0;
    // In mass order; -1: none is near.
    [[nodiscard]] virtual int32 BodyAt(BPoint point) const = 0;
    // Where the body's disc is drawn; nothing: it is not.
    struct Disc {
        BPoint center;
        float radius;
    };
    [[nodiscard]] virtual std::optional<Disc> DiscOf(int32 body) const = 0;
    // As in the run's report that is shown; nothing without one.
    [[nodiscard]] virtual std::optional<BodyMotion> MotionOf(int32 body) const = 0;
    // What is measured: a field of the display.
    [[nodiscard]] virtual MeasuredPair& Measured() = 0;
    // The display draws a ring around the body that is edited by itself.
    [[nodiscard]] virtual bool HasRing() const = 0;
    [[nodiscard]] virtual int64 Followed() const = 0;
    // What is shown turns with two bodies: nothing can be held in it.
    [[nodiscard]] virtual bool IsTurning() const = 0;
    [[nodiscard]] virtual bool IsRunning() const = 0;
    [[nodiscard]] virtual rgb_color TextColor() const = 0;
    // Shows the texts over the picture as they are now.
    virtual void ShowTexts() = 0;

protected:
    HandSight() = default;
    HandSight(const HandSight&) = default;
    HandSight& operator=(const HandSight&) = default;
};
