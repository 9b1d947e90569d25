// Draws balls into rows of pixels: lit from one side, with a smooth edge, or shining, with a glow
// around them. For as long as a drawing operation takes; one thread at a time.
#pragma once

#include "Displays/Space/SpaceItems.h"

class BallPen {
public:
    // The rows of the picture from `top` on.
    BallPen(PixelBuffer* rows, int32 top) : rows_(*rows), top_(top) {}

    void Draw(const Ball& ball);
    // Pixels from the centre that a ball may draw on.
    [[nodiscard]] static double ReachOf(const Ball& ball);

private:
    void DrawGlow(const Ball& ball);
    void DrawRow(const Ball& ball, int32 row);
    void Mix(Pixel* pixel, rgb_color color, double part) const;

    PixelBuffer& rows_;
    const int32 top_;
};
