#include "Rasterizer.h"

#include <cmath>

namespace {

constexpr Pixel kColorMask = 0x00ffffffu;
constexpr uint32 kFull = 255;

// from + (to - from) * part / 256, in all channels.
Pixel Blend(Pixel from, Pixel to, uint32 part) {
    const uint32 rest = 256 - part;
    const uint32 redBlue = ((from & 0xff00ffu) * rest + (to & 0xff00ffu) * part + 0x800080u) >> 8;
    const uint32 green = ((from & 0x00ff00u) * rest + (to & 0x00ff00u) * part + 0x8000u) >> 8;
    return 0xff000000u | (redBlue & 0xff00ffu) | (green & 0x00ff00u);
}

// The coverage of a pixel whose centre is `depth` - 0.5 inside the edge.
uint32 Coverage(double depth) {
    return depth >= 1.0 ? kFull : static_cast<uint32>(depth * kFull + 0.5);
}

// The first pixel of a row or column whose centre is at or after `x`, and the first one after it.
int32 FirstCenter(double x, int32 first, int32 end) {
    return static_cast<int32>(
        std::ceil(std::clamp(x, static_cast<double>(first), static_cast<double>(end)) - 0.5));
}

int32 EndCenter(double x, int32 first, int32 end) {
    return static_cast<int32>(
        std::floor(std::clamp(x, static_cast<double>(first), static_cast<double>(end)) + 0.5));
}

}  // namespace

bool ClipLine(const IntRect& frame, double* x0, double* y0, double* x1, double* y1) {
    const double dx = *x1 - *x0;
    const double dy = *y1 - *y0;
    double begin = 0.0;
    double end = 1.0;
    const auto clip = [&](double step, double room) {
        if (step == 0.0) return room >= 0.0;
        const double at = room / step;
        if (step < 0.0)
            begin = std::max(begin, at);
        else
            end = std::min(end, at);
        return begin <= end;
    };
    if (!clip(-dx, *x0 - frame.left) || !clip(dx, frame.right - *x0) ||
        !clip(-dy, *y0 - frame.top) || !clip(dy, frame.bottom - *y0))
        return false;
    const double startX = *x0;
    const double startY = *y0;
    if (end < 1.0) {
        *x1 = startX + end * dx;
        *y1 = startY + end * dy;
    }
    if (begin > 0.0) {
        *x0 = startX + begin * dx;
        *y0 = startY + begin * dy;
    }
    return true;
}

inline void Rasterizer::Cover(Pixel* pixel, Pixel* stroke, Pixel color, uint32 coverage) {
    const uint32 before = (*stroke & kColorMask) == (color & kColorMask) ? *stroke >> 24 : 0;
    if (coverage <= before) return;
    *stroke = (color & kColorMask) | coverage << 24;
    if (coverage == kFull)
        *pixel = color;
    else if (before == 0)
        *pixel = Blend(*pixel, color, coverage);
    else
        *pixel = Blend(*pixel, color, 256 * (coverage - before) / (256 - before));
}

IntRect Rasterizer::DrawLine(double x0, double y0, double x1, double y1, double width,
                             Pixel color) {
    const double reach = width / 2 + 0.5;
    const int32 margin = static_cast<int32>(reach) + 2;
    const IntRect bounds = pixels_.Bounds();
    if (!ClipLine({-margin, -margin, bounds.right + margin, bounds.bottom + margin}, &x0, &y0, &x1,
                  &y1))
        return {};
    double dx = x1 - x0;
    double dy = y1 - y0;
    const double length = std::sqrt(dx * dx + dy * dy);
    // A line without length is a dot: any direction will do.
    dx = length > 0.0 ? dx / length : 1.0;
    dy = length > 0.0 ? dy / length : 0.0;

    const IntRect area = {FirstCenter(std::min(x0, x1) - reach, 0, bounds.right),
                          FirstCenter(std::min(y0, y1) - reach, 0, bounds.bottom),
                          EndCenter(std::max(x0, x1) + reach, 0, bounds.right),
                          EndCenter(std::max(y0, y1) + reach, 0, bounds.bottom)};
    for (int32 y = area.top; y < area.bottom; y++) {
        // Of this row, only what lies within reach of the endless line.
        int32 left = area.left;
        int32 right = area.right;
        if (const double run = std::fabs(dy); run > 0.01) {
            const double at = x0 + (y + 0.5 - y0) * dx / dy;
            left = std::max(left, FirstCenter(at - reach / run, 0, bounds.right));
            right = std::min(right, EndCenter(at + reach / run, 0, bounds.right));
        }
        // From the start: along the line, and away from it.
        double along = (left + 0.5 - x0) * dx + (y + 0.5 - y0) * dy;
        double away = (y + 0.5 - y0) * dx - (left + 0.5 - x0) * dy;
        Pixel* pixel = pixels_.Row(y) + left;
        Pixel* stroke = strokes_.Row(y) + left;
        for (int32 x = left; x < right; x++, pixel++, stroke++, along += dx, away -= dy) {
            double distance = std::fabs(away);
            if (along < 0.0)
                distance = std::sqrt(away * away + along * along);
            else if (along > length)
                distance = std::sqrt(away * away + (along - length) * (along - length));
            if (distance < reach) Cover(pixel, stroke, color, Coverage(reach - distance));
        }
    }
    return area;
}

IntRect Rasterizer::DrawDisc(double centerX, double centerY, double radius, Pixel color) {
    const double outer = radius + 0.5;
    const double inner = radius - 0.5;
    const IntRect bounds = pixels_.Bounds();
    const IntRect area = {FirstCenter(centerX - outer, 0, bounds.right),
                          FirstCenter(centerY - outer, 0, bounds.bottom),
                          EndCenter(centerX + outer, 0, bounds.right),
                          EndCenter(centerY + outer, 0, bounds.bottom)};
    for (int32 y = area.top; y < area.bottom; y++) {
        const double dy = y + 0.5 - centerY;
        Pixel* const pixels = pixels_.Row(y);
        Pixel* const strokes = strokes_.Row(y);
        const auto edge = [&](int32 from, int32 to) {
            for (int32 x = from; x < to; x++) {
                const double dx = x + 0.5 - centerX;
                const double depth = outer - std::sqrt(dx * dx + dy * dy);
                if (depth > 0.0) Cover(pixels + x, strokes + x, color, Coverage(depth));
            }
        };
        if (std::fabs(dy) >= inner) {
            edge(area.left, area.right);
            continue;
        }
        const double half = std::sqrt(inner * inner - dy * dy);
        const int32 left = FirstCenter(centerX - half, 0, bounds.right);
        const int32 right = std::max(left, EndCenter(centerX + half, 0, bounds.right));
        const double reach = std::sqrt(outer * outer - dy * dy);
        edge(FirstCenter(centerX - reach, 0, bounds.right), left);
        std::fill(pixels + left, pixels + right, color);
        std::fill(strokes + left, strokes + right, color | 0xff000000u);
        edge(right, EndCenter(centerX + reach, 0, bounds.right));
    }
    return area;
}
