// How a space display sees what hands hold. Owned by its display; rules as for HandSight.
#pragma once

#include "Displays/Hands/HandSight.h"

class ShownModel;
class SpaceDisplay;

class SpaceSight final : public HandSight {
public:
    // None is owned.
    SpaceSight(SpaceDisplay* display, const ShownModel* shown) : display_(display), shown_(shown) {}

    [[nodiscard]] std::optional<BPoint> PointOf(const ThreeVector& place) const override;
    [[nodiscard]] HandPlane PlaneThrough(const ThreeVector& place) const override;
    [[nodiscard]] ThreeVector PlaceAt(BPoint point) const override;
    [[nodiscard]] int32 BodyAt(BPoint point) const override;
    [[nodiscard]] std::optional<Disc> DiscOf(int32 body) const override;
    [[nodiscard]] std::optional<BodyMotion> MotionOf(int32 body) const override;
    [[nodiscard]] MeasuredPair& Measured() override;
    [[nodiscard]] bool HasRing() const override { return true; }
    [[nodiscard]] int64 Followed() const override;
    [[nodiscard]] bool IsTurning() const override { return false; }
    [[nodiscard]] bool IsRunning() const override;
    [[nodiscard]] rgb_color TextColor() const override;
    void ShowTexts() override;

private:
    SpaceDisplay* const display_;
    const ShownModel* const shown_;
};
