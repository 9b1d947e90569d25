// Moves the picture of a projection display: which part of space it shows, at what scale, and what
// stands still in it. Owned by the display, and used with its lock.
#pragma once

#include <vector>

#include "Displays/Projection/ProjectionFields.h"

class KeptTrailsPainter;
class ProjectionDialogs;
class ShownModel;
class TrajectoryDisplay;

class PictureMover {
public:
    // None is owned. The fields have what is asked for.
    PictureMover(TrajectoryDisplay* display, ProjectionFields* fields, const ShownModel* shown,
                 const ProjectionDialogs* dialogs, KeptTrailsPainter* trails)
        : display_(display), fields_(fields), shown_(shown), dialogs_(dialogs), trails_(trails) {}

    // The middle of the view becomes the middle of the projection, for a picture that is drawn
    // anew.
    void Center();
    // Draws it anew, as the fields are now.
    void Redraw(bool isScaleChanged);

    void SetScale(double scale);
    void LookAlong(int32 axis);
    // From above the orbit of this body, which then goes round anticlockwise.
    void LookOnto(int64 body);
    // A message of the menu that asks for one of these; false for any other.
    [[nodiscard]] bool Handle(const BMessage& message);
    // The point of the picture stays where it is; what is followed and seen does so instead of it.
    void ZoomAbout(BPoint point, double factor);
    // Shows what is so many pixels further right and down.
    void PanBy(float right, float down);
    // Where the bodies were and will be, and not only where they are.
    void FitAll();

    // Something else stands still. The picture is not drawn yet.
    void SetFrame(int64 followed, const TurningPair& pair);
    // What is followed consists of other bodies, or of the same in another order. True if it is
    // gone, and the fields do not ask for it any more. The caller holds the model's read lock.
    [[nodiscard]] bool TakeReference(const std::vector<Body*>& bodies);

private:
    TrajectoryDisplay* const display_;
    ProjectionFields* const fields_;
    const ShownModel* const shown_;
    const ProjectionDialogs* const dialogs_;
    KeptTrailsPainter* const trails_;
};
