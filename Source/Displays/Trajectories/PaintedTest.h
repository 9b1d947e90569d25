// Tells whether a pixel is covered by a trail already, as far as the line through a point in it
// covers it at the least. For the many looks that painting trails takes: the canvas is read
// directly, and must neither go nor grow meanwhile. A plain value.
#pragma once

#include <cmath>
#include <cstdlib>

#include "Platform/Interface/Canvas/Canvas.h"

class PaintedTest {
public:
    explicit PaintedTest(const Canvas& canvas)
        : pixels_(canvas.Pixels()),
          scale_(canvas.Scale()),
          // Half a pixel: a point is the middle of its pixel.
          left_(0.5 * scale_ - canvas.Origin().x),
          top_(0.5 * scale_ - canvas.Origin().y),
          background_(ToPixel(canvas.Background())) {}

    // The trail's colour, and how much of it is left where the trail has faded: what is newer is
    // brighter, and counts as well.
    // `orAny`: a pixel that anything covers.
    void SetColor(rgb_color color, double shade, bool orAny = false) {
        color_ = ToPixel(color);
        if (orAny) {
            most_ = kAnyDifference;
            return;
        }
        const double least = kMinCovered * shade;
        most_ = static_cast<int32>((1.0 - least) * Difference(background_, color_));
    }
    // Outside the canvas nothing is painted.
    [[nodiscard]] bool operator()(double x, double y) const {
        const double column = x * scale_ + left_;
        const double row = y * scale_ + top_;
        if (!(column >= 0.0 && column < pixels_.Width() && row >= 0.0 && row < pixels_.Height()))
            return false;
        const Pixel pixel = pixels_.Row(static_cast<int32>(row))[static_cast<int32>(column)];
        return pixel != background_ && Difference(pixel, color_) < most_;
    }

private:
    // A line as wide as a pixel covers a quarter of one whose corner it touches.
    static constexpr double kMinCovered = 0.15;
    static constexpr int32 kAnyDifference = 3 * 255 + 1;

    static int32 Difference(Pixel a, Pixel b) {
        const auto channel = [=](int32 shift) {
            return std::abs(static_cast<int32>(a >> shift & 0xff) -
                            static_cast<int32>(b >> shift & 0xff));
        };
        return channel(0) + channel(8) + channel(16);
    }

    const PixelBuffer& pixels_;
    const double scale_;
    const double left_;
    const double top_;
    const Pixel background_;
    Pixel color_ = kOpaque;
    int32 most_ = 0;  // that a covered pixel differs from the colour
};
