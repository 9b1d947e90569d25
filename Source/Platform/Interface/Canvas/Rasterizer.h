// Draws anti-aliased lines and discs into rows of pixels. Works on the buffer of its owner, for as
// long as a drawing operation takes; one thread at a time. Coordinates are device pixels: pixel (i,
// j) is the square from (i, j) to (i + 1, j + 1).
#pragma once

#include "Platform/Interface/Canvas/PixelBuffer.h"
#include "Platform/Interface/Canvas/PixelPen.h"

class Rasterizer {
public:
    // `width`: of lines, at least 1.
    explicit Rasterizer(PixelBuffer& pixels, double width = 1.0);

    // The colour of what is drawn from now on.
    void SetColor(Pixel color) { pen_ = PixelPen(color); }
    // All points nearer than width / 2 to the line; nothing if an end is not finite. The pixels
    // drawn on lie in the result.
    IntRect DrawLine(double x0, double y0, double x1, double y1);
    IntRect DrawDisc(double centerX, double centerY, double radius);

private:
    // The columns of a line; low end, step and length of their sections in fractions of a pixel.
    struct Spans {
        int32 first;
        int32 end;
        int64 low;
        int64 step;
        int32 section;
    };

    // Steep: u is y and v is x.
    template <bool isSteep>
    IntRect DrawSpans(double u0, double v0, double u1, double v1);
    template <bool isSteep>
    void FillSpans(const Spans& spans);
    // The same where some sections lie outside in part.
    template <bool isSteep>
    void FillClippedSpans(const Spans& spans);
    IntRect DrawShortLine(double x0, double y0, double x1, double y1);

    PixelBuffer& pixels_;
    const double width_;
    // Lines beyond it touch nothing.
    const IntRect frame_;
    PixelPen pen_{kOpaque};
};
