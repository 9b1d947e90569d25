// The view of a projection display: what the user does with mouse and keyboard, and the texts over
// the picture. Owned by its window; threads as for TrajectoryView.
#pragma once

#include "Displays/Trajectories/TrajectoryView.h"

class ProjectionDisplay;

class ProjectionView : public TrajectoryView {
public:
    explicit ProjectionView(ProjectionDisplay* display);

    void MouseDown(const MouseInput& input) override;
    void MouseUp(const MouseInput& input) override;
    void MouseMoved(const MouseInput& input, Transit transit) override;
    void WheelTurned(const WheelInput& input) override;
    void Pinched(const PinchInput& input) override;
    void KeyDown(const KeyInput& input) override;
    void KeyUp(const KeyInput& input) override;

    // Shows the texts as they are now.
    void ShowTexts() { ShowPicture(); }

protected:
    [[nodiscard]] std::vector<OverlayItem> MakeOverlay() override;

private:
    void PanFrom(BPoint place);

    ProjectionDisplay* const display_;
    bool isDragged_ = false;
    bool isClick_ = false;  // a button was pressed, and the mouse has hardly moved since
    BPoint grabbed_;        // where in the view the mouse was last during a drag
    bool hasPointer_ = false;
    BPoint pointer_;
};
