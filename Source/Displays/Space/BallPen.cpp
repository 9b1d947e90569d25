#include "Displays/Space/BallPen.h"

#include <algorithm>
#include <cmath>

namespace {

// Of the light, on the side that is turned away.
constexpr double kDarkSide = 0.3;
// How much whiter what shines is in its middle.
constexpr double kWhiteness = 0.6;
// Around what shines.
constexpr double kGlow = 0.5;
constexpr double kGlowRadii = 3.0;
constexpr double kGlowPixels = 8.0;

// The pixels whose centres lie between `from` and `to`, of `count`.
struct Range {
    int32 first;
    int32 end;
};

Range PixelsBetween(double from, double to, int32 count) {
    const auto bound = [count](double edge) {
        return static_cast<int32>(
            std::ceil(std::clamp(edge - 0.5, 0.0, static_cast<double>(count))));
    };
    return {bound(from), bound(to)};
}

uint8 Channel(double value) {
    return static_cast<uint8>(std::clamp(value + 0.5, 0.0, 255.0));
}

rgb_color Shaded(rgb_color color, double light, double whiteness) {
    const auto channel = [&](uint8 value) {
        return Channel(light * (value + whiteness * (255 - value)));
    };
    return {channel(color.red), channel(color.green), channel(color.blue), 255};
}

}  // namespace

double BallPen::ReachOf(const Ball& ball) {
    return ball.isLight ? kGlowRadii * ball.radius + kGlowPixels : ball.radius + 1.0;
}

void BallPen::Mix(Pixel* pixel, rgb_color color, double part) const {
    const rgb_color under = ToColor(*pixel);
    const auto channel = [part](uint8 below, uint8 above) {
        return Channel(below + part * (above - below));
    };
    *pixel = ToPixel({channel(under.red, color.red), channel(under.green, color.green),
                      channel(under.blue, color.blue), 255});
}

void BallPen::Draw(const Ball& ball) {
    if (ball.isLight) DrawGlow(ball);
    const double outer = ball.radius + 0.5;
    const Range rows = PixelsBetween(ball.y - top_ - outer, ball.y - top_ + outer, rows_.Height());
    for (int32 row = rows.first; row < rows.end; row++)
        DrawRow(ball, row);
}

void BallPen::DrawRow(const Ball& ball, int32 row) {
    const double outer = ball.radius + 0.5;
    const double dy = row + 0.5 - (ball.y - top_);
    const double half = std::sqrt(std::max(0.0, outer * outer - dy * dy));
    const Range columns = PixelsBetween(ball.x - half, ball.x + half, rows_.Width());
    Pixel* const pixels = rows_.Row(row);
    for (int32 column = columns.first; column < columns.end; column++) {
        const double dx = column + 0.5 - ball.x;
        const double square = dx * dx + dy * dy;
        const double cover = std::min(1.0, outer - std::sqrt(square));
        if (!(cover > 0.0)) continue;
        // Of the surface there: at right angles to it.
        const double x = dx / ball.radius;
        const double y = -dy / ball.radius;
        const double z = std::sqrt(std::max(0.0, 1.0 - square / (ball.radius * ball.radius)));
        const double turned = x * ball.light.x + y * ball.light.y + z * ball.light.z;
        const rgb_color color =
            ball.isLight
                ? Shaded(ball.color, 1.0, kWhiteness * z)
                : Shaded(ball.color, kDarkSide + (1.0 - kDarkSide) * std::max(0.0, turned), 0.0);
        Mix(pixels + column, color, cover);
    }
}

void BallPen::DrawGlow(const Ball& ball) {
    const double reach = ReachOf(ball);
    const Range rows = PixelsBetween(ball.y - top_ - reach, ball.y - top_ + reach, rows_.Height());
    const Range columns = PixelsBetween(ball.x - reach, ball.x + reach, rows_.Width());
    for (int32 row = rows.first; row < rows.end; row++) {
        const double dy = row + 0.5 - (ball.y - top_);
        Pixel* const pixels = rows_.Row(row);
        for (int32 column = columns.first; column < columns.end; column++) {
            const double dx = column + 0.5 - ball.x;
            const double faded = 1.0 - std::sqrt(dx * dx + dy * dy) / reach;
            if (faded > 0.0) Mix(pixels + column, ball.color, kGlow * faded * faded);
        }
    }
}
