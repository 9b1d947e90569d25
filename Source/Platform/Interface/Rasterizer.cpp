#include "Rasterizer.h"

#include <cmath>
#include <utility>

namespace {

// How much of a pixel is covered, in levels; the highest is all of it.
constexpr int32 kLevelBits = 5;
constexpr uint32 kAll = 1u << kLevelBits;

// A pixel's highest byte: three bits that stand for a colour, and a level below kAll. A pixel
// without such a mark has 255 there, as opaque pixels do; so level 31 of the last of the eight
// colours would be no mark, and kAll - 1 is drawn as kAll. Two colours that share their three bits
// are told apart only where both cover a pixel in part; nobody sees that.
constexpr int32 kMarkShift = 24;
constexpr uint32 kLevelMask = kAll - 1;
constexpr uint32 kTagMask = 0xffu & ~kLevelMask;
constexpr uint32 kNoMark = 0xff;

// Fractions of a pixel in whole numbers.
constexpr int32 kFractionBits = 16;
constexpr int32 kOne = 1 << kFractionBits;

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

uint32 LevelOf(double coverage) {
    return coverage >= 1.0 ? kAll : static_cast<uint32>(Floor(coverage * kAll + 0.5));
}

// The first pixel of a row or column whose centre is at or after `x`, and the first one after it.
int32 FirstCenter(double x, int32 first, int32 end) {
    return -Floor(0.5 - std::clamp(x, static_cast<double>(first), static_cast<double>(end)));
}

int32 EndCenter(double x, int32 first, int32 end) {
    return Floor(std::clamp(x, static_cast<double>(first), static_cast<double>(end)) + 0.5);
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

void Rasterizer::SetColor(Pixel color) {
    color_ = color | kNoMark << kMarkShift;
    redBlue_ = color & 0xff00ffu;
    green_ = color & 0x00ff00u;
    // Any mixture of the colour's bits.
    const uint32 hash = (color & 0xffffffu) * 0x9e3779b1u;
    tag_ = hash >> 24 & kTagMask;
}

inline void Rasterizer::Cover(Pixel* pixel, uint32 level) const {
    if (level == 0) return;
    if (level >= kAll - 1) {
        *pixel = color_;
        return;
    }
    const Pixel before = *pixel;
    const uint32 mark = before >> kMarkShift;
    uint32 share = 256 / kAll * level;
    if ((mark & kTagMask) == tag_ && mark != kNoMark) {
        const uint32 covered = mark & kLevelMask;
        if (level <= covered) return;
        share = 256 * (level - covered) / (kAll - covered);
    }
    const uint32 rest = 256 - share;
    const uint32 redBlue = ((before & 0xff00ffu) * rest + redBlue_ * share) >> 8;
    const uint32 green = ((before & 0x00ff00u) * rest + green_ * share) >> 8;
    *pixel = (redBlue & 0xff00ffu) | (green & 0x00ff00u) | (tag_ | level) << kMarkShift;
}

IntRect Rasterizer::DrawLine(double x0, double y0, double x1, double y1, double width) {
    const int32 margin = static_cast<int32>(width) + 2;
    const IntRect bounds = pixels_.Bounds();
    const IntRect frame = {-margin, -margin, bounds.right + margin, bounds.bottom + margin};
    if (!frame.Contains(x0, y0) || !frame.Contains(x1, y1))
        if (!ClipLine(frame, &x0, &y0, &x1, &y1)) return {};
    const double dx = std::fabs(x1 - x0);
    const double dy = std::fabs(y1 - y0);
    if (dx < kShortLine && dy < kShortLine)
        DrawShortLine(x0, y0, x1, y1, width);
    else if (dx >= dy)
        DrawSpans<false>(x0, y0, x1, y1, width);
    else
        DrawSpans<true>(y0, x0, y1, x1, width);
    const IntRect area = {Floor(std::min(x0, x1)) - margin, Floor(std::min(y0, y1)) - margin,
                          Floor(std::max(x0, x1)) + margin, Floor(std::max(y0, y1)) + margin};
    return Intersection(area, bounds);
}

// Column by column (of a steep line row by row) from u0 to u1: the line's section there, which is
// longer than the width by the slope, covers one pixel in part, some wholly, and one in part.
template <bool isSteep>
void Rasterizer::DrawSpans(double u0, double v0, double u1, double v1, double width) {
    if (u0 > u1) {
        std::swap(u0, u1);
        std::swap(v0, v1);
    }
    const int32 stride = pixels_.Width();
    const int32 first = std::max(Floor(u0), 0);
    const int32 last = std::min(Floor(u1), (isSteep ? pixels_.Height() : stride) - 1);
    if (first > last) return;
    const double slope = (v1 - v0) / (u1 - u0);
    const double section = width * std::sqrt(1.0 + slope * slope);
    Spans spans;
    spans.low = ToFixed(v0 + slope * (first + 0.5 - u0) - section / 2);
    spans.step = ToFixed(slope);
    spans.section = static_cast<int32>(ToFixed(section));
    spans.pixels = Floor(section) + 2;
    spans.columns = last - first + 1;
    spans.endV = isSteep ? stride : pixels_.Height();
    spans.stepU = isSteep ? stride : 1;
    spans.stepV = isSteep ? 1 : stride;
    spans.at = first * spans.stepU;
    const int64 end = spans.low + spans.step * (spans.columns - 1);
    const int64 least = std::min(spans.low, end) >> kFractionBits;
    const int64 most = std::max(spans.low, end) >> kFractionBits;
    if (least >= 0 && most + spans.pixels <= spans.endV)
        FillSpans<false>(spans);
    else
        FillSpans<true>(spans);
}

template <bool isClipped>
void Rasterizer::FillSpans(const Spans& spans) {
    constexpr int32 kLevelShift = kFractionBits - kLevelBits;
    constexpr int32 kHalfLevel = 1 << (kLevelShift - 1);
    const Spans line = spans;  // pixels that are written cannot change it
    const Rasterizer pen = *this;
    Pixel* column = pixels_.Row(0) + line.at;
    int64 low = line.low;
    for (int32 u = 0; u < line.columns; u++, low += line.step, column += line.stepU) {
        auto v = static_cast<int32>(low >> kFractionBits);
        Pixel* pixel = column + v * line.stepV;
        const auto cover = [&](int32 part) {
            if (!isClipped || static_cast<uint32>(v) < static_cast<uint32>(line.endV))
                pen.Cover(pixel, static_cast<uint32>((part + kHalfLevel) >> kLevelShift));
        };
        // What is left of the section, counted from the first pixel's edge.
        const auto begin = static_cast<int32>(low & (kOne - 1));
        int32 rest = begin + line.section;
        cover(kOne - begin);
        for (rest -= kOne; rest > kHalfLevel; rest -= kOne) {
            pixel += line.stepV;
            v++;
            cover(std::min(rest, kOne));
        }
    }
}

// A line within a pixel, as a dot.
void Rasterizer::DrawShortLine(double x0, double y0, double x1, double y1, double width) {
    const double reach = width / 2 + 0.5;
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
                Cover(pixels_.Row(y) + x, LevelOf(reach - std::sqrt(distance)));
        }
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
                if (depth > 0.0) Cover(row + x, LevelOf(depth));
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
        std::fill(row + left, row + right, color_);
        edge(right, EndCenter(centerX + reach, 0, bounds.right));
    }
    return area;
}
