// How a projection sees what hands hold. Owned by its display; rules as for HandSight.
#pragma once

#include "Displays/Hands/HandSight.h"

class ProjectionDisplay;
class ProjectionView;
class ShownModel;
struct ProjectionFields;

class ProjectionSight final : public HandSight {
public:
    // None is owned.
    ProjectionSight(const ProjectionDisplay* display, ProjectionFields* fields,
                    const ShownModel* shown)
        : display_(display), fields_(fields), shown_(shown) {}

    [[nodiscard]] std::optional<BPoint> PointOf(const ThreeVector& place) const override;
    [[nodiscard]] HandPlane PlaneThrough(const ThreeVector& place) const override;
    [[nodiscard]] ThreeVector PlaceAt(BPoint point) const override;
    [[nodiscard]] int32 BodyAt(BPoint point) const override;
    [[nodiscard]] std::optional<Disc> DiscOf(int32 body) const override;
    [[nodiscard]] std::optional<BodyMotion> MotionOf(int32 body) const override;
    [[nodiscard]] MeasuredPair& Measured() override;
    [[nodiscard]] bool HasRing() const override { return false; }
    [[nodiscard]] int64 Followed() const override;
    [[nodiscard]] bool IsTurning() const override;
    [[nodiscard]] bool IsRunning() const override;
    [[nodiscard]] rgb_color TextColor() const override { return {205, 210, 220, 255}; }
    void ShowTexts() override;

private:
    [[nodiscard]] ProjectionView* View() const;

    const ProjectionDisplay* const display_;
    ProjectionFields* const fields_;
    const ShownModel* const shown_;
};
