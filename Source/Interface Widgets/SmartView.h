// A view that shows an offscreen drawing which stays: what is drawn with the SV operations goes
// into the offscreen picture first, is taken over by SVSync, and is seen after SyncBitmapView.
// Threads as for CanvasView: whoever holds the lock of the view's window may draw.
#pragma once

#include "Platform/Interface/Canvas/CanvasView.h"

// The two patterns that the program fills with.
enum pattern { B_SOLID_HIGH, B_SOLID_LOW };

class SmartView : public CanvasView {
public:
    // `low`: the colour of what nothing was drawn on.
    SmartView(const char* name, rgb_color low);

    void SetHighColor(rgb_color color) { high_ = color; }
    [[nodiscard]] rgb_color HighColor() const { return high_; }
    [[nodiscard]] rgb_color LowColor() const { return Background(); }
    // All of the offscreen picture, of which the view shows a part.
    [[nodiscard]] BRect BitmapBounds() const { return LowerLayer().Bounds(); }

    void SVBeginLineArray(int32 count) { LowerLayer().BeginLineArray(count); }
    void SVAddLine(const BPoint& from, const BPoint& to, rgb_color color) {
        LowerLayer().AddLine(from, to, color);
    }
    void SVEndLineArray() { LowerLayer().EndLineArray(); }
    void SVFillRect(const BRect& rect, pattern fill);

    void SVSync() { SyncLayers(); }
    void SyncBitmapView() { Sync(); }

private:
    rgb_color high_{255, 255, 255, 255};
};
