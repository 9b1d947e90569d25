// The view of a space display: what the user does with mouse and keyboard. Owned by its window;
// threads as for CanvasView.
#pragma once

#include "Displays/Space/SpaceCanvas.h"

class SpaceDisplay;

class SpaceView : public SpaceCanvas {
public:
    explicit SpaceView(SpaceDisplay* display);

    void MouseDown(const MouseInput& input) override;
    void MouseUp(const MouseInput& input) override;
    void MouseMoved(const MouseInput& input, Transit transit) override;
    void WheelTurned(const WheelInput& input) override;
    void Pinched(const PinchInput& input) override;
    void KeyDown(const KeyInput& input) override;
    void KeyUp(const KeyInput& input) override;
    void FrameResized(BRect bounds) override;

    // The camera is being moved by the mouse.

protected:
    void AddOverlay(std::vector<OverlayItem>* items) const override;

private:
    enum class Drag { kNone, kTurn, kPan };

    void EndDrag();

    SpaceDisplay* const display_;
    Drag drag_ = Drag::kNone;
    BPoint grabbed_;        // where in the view the mouse was last during a drag
    bool isClick_ = false;  // the mouse has hardly moved since
};
