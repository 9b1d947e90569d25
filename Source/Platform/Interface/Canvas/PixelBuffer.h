// Rows of opaque pixels, 0xffRRGGBB (in the highest byte a Rasterizer may keep something of its own
// until the pixel is copied), and rectangles of whole device pixels (right and bottom are
// the first ones outside). Plain values.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "Platform/Support/GraphicsDefs.h"

using Pixel = uint32;

inline constexpr Pixel kOpaque = 0xff000000u;

[[nodiscard]] constexpr Pixel ToPixel(rgb_color color) {
    return kOpaque | static_cast<uint32>(color.red) << 16 | static_cast<uint32>(color.green) << 8 |
           color.blue;
}

[[nodiscard]] constexpr rgb_color ToColor(Pixel pixel) {
    return {static_cast<uint8>(pixel >> 16), static_cast<uint8>(pixel >> 8),
            static_cast<uint8>(pixel), 255};
}

struct IntPoint {
    int32 x = 0;
    int32 y = 0;

    bool operator==(const IntPoint&) const = default;
};

struct IntRect {
    int32 left = 0;
    int32 top = 0;
    int32 right = 0;
    int32 bottom = 0;

    [[nodiscard]] int32 Width() const { return right - left; }
    [[nodiscard]] int32 Height() const { return bottom - top; }
    [[nodiscard]] bool IsEmpty() const { return right <= left || bottom <= top; }
    // The right and lower edges count as inside.
    [[nodiscard]] bool Contains(double x, double y) const {
        return x >= left && x <= right && y >= top && y <= bottom;
    }
    [[nodiscard]] IntRect MovedBy(IntPoint by) const {
        return {left + by.x, top + by.y, right + by.x, bottom + by.y};
    }
    [[nodiscard]] IntRect GrownBy(int32 by) const {
        return {left - by, top - by, right + by, bottom + by};
    }
    bool operator==(const IntRect&) const = default;
};

[[nodiscard]] inline IntRect Intersection(const IntRect& a, const IntRect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

// The least rectangle that holds both; an empty one does not count.
[[nodiscard]] inline IntRect Union(const IntRect& a, const IntRect& b) {
    if (a.IsEmpty()) return b;
    if (b.IsEmpty()) return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

class PixelBuffer {
public:
    PixelBuffer() = default;
    PixelBuffer(int32 width, int32 height, Pixel fill);

    [[nodiscard]] int32 Width() const { return width_; }
    [[nodiscard]] int32 Height() const { return height_; }
    [[nodiscard]] IntRect Bounds() const { return {0, 0, width_, height_}; }
    [[nodiscard]] Pixel* Row(int32 y) { return pixels_.data() + Offset(y); }
    [[nodiscard]] const Pixel* Row(int32 y) const { return pixels_.data() + Offset(y); }

    void Fill(const IntRect& rect, Pixel pixel);
    // Puts `area` of `source` to `to`, made opaque; clips to both.
    void Copy(const PixelBuffer& source, const IntRect& area, IntPoint to);
    // The same with what a Rasterizer keeps of the pixels: the drawing goes on here.
    void TakeOver(const PixelBuffer& source, const IntRect& area, IntPoint to);

private:
    // Calls `copy` for each row: from, end, to.
    template <typename CopyRow>
    void CopyRows(const PixelBuffer& source, const IntRect& area, IntPoint to, CopyRow copy);
    [[nodiscard]] std::size_t Offset(int32 y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }

    int32 width_ = 0;
    int32 height_ = 0;
    std::vector<Pixel> pixels_;
};
