// Draws anti-aliased lines and discs into rows of pixels. Works on the buffers of its owner, for as
// long as a drawing operation takes; one thread at a time. Coordinates are device pixels: pixel (i,
// j) is the square from (i, j) to (i + 1, j + 1).
//
// Beside each pixel stands its stroke: the colour that was last drawn there, and in place of the
// alpha how much of the pixel it covers (0 ... 255). Drawing the same colour again adds only what
// is not yet covered, so that overlapping pieces of one trail cannot be told from a single line.
#pragma once

#include "PixelBuffer.h"

class Rasterizer {
public:
    // Buffers of the same size.
    Rasterizer(PixelBuffer& pixels, PixelBuffer& strokes) : pixels_(pixels), strokes_(strokes) {}

    // All points nearer than width / 2 to the line. Ends must be finite. The coverage of a pixel is
    // taken as that of a square turned to lie along the line. The pixels drawn on lie in the
    // result.
    IntRect DrawLine(double x0, double y0, double x1, double y1, double width, Pixel color);
    IntRect DrawDisc(double centerX, double centerY, double radius, Pixel color);

private:
    void Cover(Pixel* pixel, Pixel* stroke, Pixel color, uint32 coverage);

    PixelBuffer& pixels_;
    PixelBuffer& strokes_;
};

// The part of the line inside the rectangle (Liang-Barsky); false if there is none.
[[nodiscard]] bool ClipLine(const IntRect& frame, double* x0, double* y0, double* x1, double* y1);
