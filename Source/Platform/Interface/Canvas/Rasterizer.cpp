#include "Platform/Interface/Canvas/Rasterizer.h"

#include <cmath>

#include "Platform/Interface/Canvas/LineClip.h"

namespace {

// Fractions of a pixel in whole numbers.
constexpr int32 kFractionBits = 16;
constexpr int32 kOne = 1 << kFractionBits;
constexpr int32 kLevelShift = kFractionBits - PixelPen::kLevelBits;
constexpr int32 kHalfLevel = 1 << (kLevelShift - 1);

// Shorter ones say too little about the direction to be continued to the middle of a pixel.
constexpr double kShortLine = 1.0 / 32;

// Without the library's calls; for numbers that are near a picture.
int32 Floor(double x) {
    const auto whole = static_cast<int32>(x);
    return whole - (x < whole ? 1 : 0);
}

int64 ToFixed(double x) {
    return static_cast<int64>(x * kOne);
}

// Of such a part of a pixel, at most all of it.
uint32 LevelOfFixed(int32 part) {
    return static_cast<uint32>(std::min(part, kOne) + kHalfLevel) >> kLevelShift;
}

uint32 LevelOf(double coverage) {
    return coverage >= 1.0 ? PixelPen::kAll
                           : static_cast<uint32>(Floor(coverage * PixelPen::kAll + 0.5));
}

// The first pixel of a row or column whose centre is at or after `x`, and the first one after it.
int32 FirstCenter(double x, int32 first, int32 end) {
    return -Floor(0.5 - std::clamp(x, static_cast<double>(first), static_cast<double>(end)));
}

int32 EndCenter(double x, int32 first, int32 end) {
    return Floor(std::clamp(x, static_cast<double>(first), static_cast<double>(end)) + 0.5);
}

}  // namespace

Rasterizer::Rasterizer(PixelBuffer& pixels, double width)
    : pixels_(pixels),
      width_(width),
      frame_(pixels.Bounds().GrownBy(static_cast<int32>(width) + 2)) {}

IntRect Rasterizer::DrawLine(double x0, double y0, double x1, double y1) {
    if (!frame_.Contains(x0, y0) || !frame_.Contains(x1, y1))
        if (!std::isfinite(x0 + y0 + x1 + y1) || !ClipLine(frame_, &x0, &y0, &x1, &y1)) return {};
    const double dx = std::fabs(x1 - x0);
    const double dy = std::fabs(y1 - y0);
    if (dx < kShortLine && dy < kShortLine) return DrawShortLine(x0, y0, x1, y1);
    return dx >= dy ? DrawSpans<false>(x0, y0, x1, y1) : DrawSpans<true>(y0, x0, y1, x1);
}

// Column by column (of a steep line row by row) from u0 to u1: the line's section there, which is
// longer than the width by the slope, covers one pixel in part, some wholly, and one in part.
template <bool isSteep>
IntRect Rasterizer::DrawSpans(double u0, double v0, double u1, double v1) {
    const bool isForward = u0 <= u1;
    const double begin = isForward ? u0 : u1;
    const double beginV = isForward ? v0 : v1;
    const double stop = isForward ? u1 : u0;
    const int32 endU = isSteep ? pixels_.Height() : pixels_.Width();
    const int32 endV = isSteep ? pixels_.Width() : pixels_.Height();
    Spans spans;
    spans.first = std::max(Floor(begin), 0);
    spans.end = std::min(Floor(stop) + 1, endU);
    if (spans.first >= spans.end) return {};
    const double slope = (v1 - v0) / (u1 - u0);
    const double section = width_ * std::sqrt(1.0 + slope * slope);
    spans.low = ToFixed(beginV + slope * (spans.first + 0.5 - begin) - section / 2);
    spans.step = ToFixed(slope);
    spans.section = static_cast<int32>(ToFixed(section));
    const int64 lastLow = spans.low + spans.step * (spans.end - spans.first - 1);
    const int64 least = std::min(spans.low, lastLow) >> kFractionBits;
    const int64 most = (std::max(spans.low, lastLow) + spans.section) >> kFractionBits;
    if (least >= 0 && most < endV)
        FillSpans<isSteep>(spans);
    else
        FillClippedSpans<isSteep>(spans);
    const auto top = static_cast<int32>(std::max<int64>(least, 0));
    const auto bottom = static_cast<int32>(std::min<int64>(most + 1, endV));
    return isSteep ? IntRect{top, spans.first, bottom, spans.end}
                   : IntRect{spans.first, top, spans.end, bottom};
}

// No section is shorter than a pixel, so each touches two pixels at least.
template <bool isSteep>
inline void Rasterizer::FillSpans(const Spans& spans) {
    const std::ptrdiff_t stride = pixels_.Width();
    const std::ptrdiff_t stepU = isSteep ? stride : 1;
    const std::ptrdiff_t stepV = isSteep ? 1 : stride;
    const PixelPen pen = pen_;  // pixels that are written cannot change it
    Pixel* column = pixels_.Row(0) + spans.first * stepU;
    int64 low = spans.low;
    for (int32 u = spans.first; u < spans.end; u++, low += spans.step, column += stepU) {
        Pixel* pixel = column + (low >> kFractionBits) * stepV;
        const auto offset = static_cast<int32>(low & (kOne - 1));
        // What is left of the section after the first pixel.
        int32 rest = offset + spans.section - kOne;
        pen.Cover(pixel, LevelOfFixed(kOne - offset), pixel + stepV, LevelOfFixed(rest));
        pixel += stepV;
        while ((rest -= kOne) > kHalfLevel)
            pen.Cover(pixel += stepV, LevelOfFixed(rest));
    }
}

template <bool isSteep>
void Rasterizer::FillClippedSpans(const Spans& spans) {
    const int32 endV = isSteep ? pixels_.Width() : pixels_.Height();
    int64 low = spans.low;
    for (int32 u = spans.first; u < spans.end; u++, low += spans.step) {
        auto v = static_cast<int32>(low >> kFractionBits);
        const auto cover = [&](int32 part) {
            if (v >= 0 && v < endV)
                pen_.Cover(isSteep ? pixels_.Row(u) + v : pixels_.Row(v) + u, LevelOfFixed(part));
            v++;
        };
        const auto offset = static_cast<int32>(low & (kOne - 1));
        cover(kOne - offset);
        for (int32 rest = offset + spans.section - kOne; rest > kHalfLevel; rest -= kOne)
            cover(rest);
    }
}

// A line within a pixel, as a dot.
IntRect Rasterizer::DrawShortLine(double x0, double y0, double x1, double y1) {
    const double reach = width_ / 2 + 0.5;
    const double dx = x1 - x0;
    const double dy = y1 - y0;
    const double square = dx * dx + dy * dy;
    const IntRect bounds = pixels_.Bounds();
    const IntRect area = {FirstCenter(std::min(x0, x1) - reach, 0, bounds.right),
                          FirstCenter(std::min(y0, y1) - reach, 0, bounds.bottom),
                          EndCenter(std::max(x0, x1) + reach, 0, bounds.right),
                          EndCenter(std::max(y0, y1) + reach, 0, bounds.bottom)};
    for (int32 y = area.top; y < area.bottom; y++)
        for (int32 x = area.left; x < area.right; x++) {
            // From the nearest point of the line.
            double awayX = x + 0.5 - x0;
            double awayY = y + 0.5 - y0;
            const double along = awayX * dx + awayY * dy;
            const double part = along <= 0.0 ? 0.0 : along >= square ? 1.0 : along / square;
            awayX -= part * dx;
            awayY -= part * dy;
            const double distance = awayX * awayX + awayY * awayY;
            if (distance < reach * reach)
                pen_.Cover(pixels_.Row(y) + x, LevelOf(reach - std::sqrt(distance)));
        }
    return area;
}

IntRect Rasterizer::DrawDisc(double centerX, double centerY, double radius) {
    const double outer = radius + 0.5;
    const double inner = radius - 0.5;
    const IntRect bounds = pixels_.Bounds();
    const IntRect area = {FirstCenter(centerX - outer, 0, bounds.right),
                          FirstCenter(centerY - outer, 0, bounds.bottom),
                          EndCenter(centerX + outer, 0, bounds.right),
                          EndCenter(centerY + outer, 0, bounds.bottom)};
    for (int32 y = area.top; y < area.bottom; y++) {
        const double dy = y + 0.5 - centerY;
        Pixel* const row = pixels_.Row(y);
        const auto edge = [&](int32 from, int32 to) {
            for (int32 x = from; x < to; x++) {
                const double dx = x + 0.5 - centerX;
                const double depth = outer - std::sqrt(dx * dx + dy * dy);
                if (depth > 0.0) pen_.Cover(row + x, LevelOf(depth));
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
        std::fill(row + left, row + right, pen_.Full());
        edge(right, EndCenter(centerX + reach, 0, bounds.right));
    }
    return area;
}
