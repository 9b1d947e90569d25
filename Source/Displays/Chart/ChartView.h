// The view of a chart: paints it, and knows what the user does there with mouse and keyboard. Needs
// no window to paint. Threads as for CanvasView.
#pragma once

#include <string>

#include "Displays/Chart/ChartItems.h"
#include "Platform/Interface/Canvas/CanvasView.h"

class ChartDisplay;

class ChartView : public CanvasView {
public:
    // Null: nobody is told what the user does. Not owned.
    explicit ChartView(ChartDisplay* display);

    void Paint(const ChartItems& items);
    // What a screen reader says of it.
    void Describe(const std::string& said);
    [[nodiscard]] bool IsEmpty() const;

    void MouseDown(const MouseInput& input) override;
    void MouseUp(const MouseInput& input) override;
    void MouseMoved(const MouseInput& input, Transit transit) override;
    void WheelTurned(const WheelInput& input) override;
    void Pinched(const PinchInput& input) override;
    void KeyDown(const KeyInput& input) override;
    void FrameResized(BRect bounds) override;

private:
    [[nodiscard]] OverlayItem OverlayOf(const ChartItems::Text& text) const;

    ChartDisplay* const display_;
    std::string said_;
    bool isHeld_ = false;
    bool isClick_ = false;  // the mouse has hardly moved since
    BPoint grabbed_;
};
