// A picture in memory, drawn into with anti-aliased lines and discs. A plain object: needs no
// window, no event loop and no window server. Used by one thread at a time.
//
// Coordinates are logical pixels: pixel (x, y) has its centre at the point (x, y), and a rectangle
// covers the pixels left ... right and top ... bottom, both included. Bounds may lie anywhere, so
// that the picture can grow on all sides without moving anything. `scale` device pixels make one
// logical pixel; everything is drawn in device pixels.
//
// Lines have the width of one logical pixel and round ends. What a colour covers of a pixel it
// covers once: a line drawn again, or in many short pieces, becomes neither thicker nor jagged.
#pragma once

#include <vector>

#include "Platform/Interface/Canvas/DamageMap.h"
#include "Platform/Interface/Canvas/PixelBuffer.h"
#include "Platform/Support/GraphicsDefs.h"

class Canvas {
public:
    Canvas(BRect bounds, rgb_color background, double scale = 1.0);

    [[nodiscard]] BRect Bounds() const { return bounds_; }
    [[nodiscard]] double Scale() const { return scale_; }
    [[nodiscard]] rgb_color Background() const { return background_; }
    // New areas are filled with it from now on; changes nothing that is there.
    void SetBackground(rgb_color background) { background_ = background; }

    // Keeps what lies in both the old and the new bounds, at its place.
    void SetBounds(BRect bounds);
    // Redraws what is there in the new size of device pixels.
    void SetScale(double scale);

    // Gather lines and draw them all at the end. `count` is a hint. Clipped to the bounds; a line
    // with an end that is not finite is left out.
    void BeginLineArray(int32 count);
    void AddLine(BPoint from, BPoint to, rgb_color color) {
        lines_.push_back({from, to, ToPixel(color)});
    }
    void EndLineArray();

    void Fill(rgb_color color);
    void FillRect(BRect rect, rgb_color color);
    // Radius in logical pixels; a smaller one than 0.5 is drawn as 0.5, so that it can be seen.
    void DrawDisc(BPoint center, float radius, rgb_color color);
    // Copies what both pictures have of the rectangle. The scales must be the same.
    void CopyFrom(const Canvas& source, BRect rect);
    // Puts device pixels there, the first one at this point.
    void CopyFrom(const PixelBuffer& source, BPoint leftTop);

    // The pixel that holds the point; the background outside the bounds.
    [[nodiscard]] rgb_color PixelAt(BPoint where) const;

    // What was drawn on since the damage was last cleared, in device pixels of Pixels().
    [[nodiscard]] const DamageMap& Damage() const { return damage_; }
    void ClearDamage() { damage_.Clear(); }
    // Copies all that is damaged in `source`, which must have the same bounds and scale.
    void CopyDamageFrom(const Canvas& source);

    // The pixels; (0, 0) is the left-top corner of the bounds.
    [[nodiscard]] const PixelBuffer& Pixels() const { return pixels_; }
    // Device pixel of the left-top corner, counted from the point where coordinates begin.
    [[nodiscard]] IntPoint Origin() const { return origin_; }

private:
    struct Line {
        BPoint from;
        BPoint to;
        Pixel color;
    };

    [[nodiscard]] std::size_t EndOfRun(std::size_t first) const;
    [[nodiscard]] IntRect DeviceRect(BRect rect) const;
    [[nodiscard]] double DeviceX(float x) const;
    [[nodiscard]] double DeviceY(float y) const;

    BRect bounds_;
    rgb_color background_;
    double scale_;
    IntPoint origin_;
    PixelBuffer pixels_;
    DamageMap damage_;
    std::vector<Line> lines_;
};
