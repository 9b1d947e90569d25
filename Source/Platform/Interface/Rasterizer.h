// Draws anti-aliased lines and discs into rows of pixels. Works on the buffer of its owner, for as
// long as a drawing operation takes; one thread at a time. Coordinates are device pixels: pixel (i,
// j) is the square from (i, j) to (i + 1, j + 1).
//
// A pixel that is covered in part remembers by which colour, and how much, in the byte that would
// be its alpha. Drawing that colour again adds only what is not covered yet, so that the pieces of
// a trail, and the rounds of an orbit, cannot be told from a single line.
#pragma once

#include <cstddef>

#include "PixelBuffer.h"

class Rasterizer {
public:
    explicit Rasterizer(PixelBuffer& pixels) : pixels_(pixels) {}

    // The colour of what is drawn from now on.
    void SetColor(Pixel color);
    // All points nearer than width / 2 to the line. Ends must be finite. The pixels drawn on lie in
    // the result.
    IntRect DrawLine(double x0, double y0, double x1, double y1, double width);
    IntRect DrawDisc(double centerX, double centerY, double radius);

private:
    // The columns of a line: low end, step and length of their sections in fractions of a pixel,
    // how many pixels a section may touch, and how to walk through the buffer.
    struct Spans {
        int64 low;
        int64 step;
        int32 section;
        int32 pixels;
        int32 columns;
        int32 endV;
        std::ptrdiff_t at;
        std::ptrdiff_t stepU;
        std::ptrdiff_t stepV;
    };

    // Steep: u is y and v is x.
    template <bool isSteep>
    void DrawSpans(double u0, double v0, double u1, double v1, double width);
    template <bool isClipped>
    void FillSpans(const Spans& spans);
    void DrawShortLine(double x0, double y0, double x1, double y1, double width);
    // Levels: 0 nothing ... kAll all of the pixel.
    void Cover(Pixel* pixel, uint32 level) const;

    PixelBuffer& pixels_;
    Pixel color_ = 0;
    uint32 redBlue_ = 0;
    uint32 green_ = 0;
    uint32 tag_ = 0;
};

// The part of the line inside the rectangle (Liang-Barsky); false if there is none.
[[nodiscard]] bool ClipLine(const IntRect& frame, double* x0, double* y0, double* x1, double* y1);
