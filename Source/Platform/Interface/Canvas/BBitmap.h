// A small picture in memory: an icon. A plain object, used by one thread at a time.
#pragma once

#include <cstddef>
#include <vector>

#include "Platform/Support/GraphicsDefs.h"

enum color_space {
    B_RGB32,  // blue, green, red, alpha
    B_CMAP8,  // an index into the colours of BBitmap::SystemColor
};

class BBitmap {
public:
    // `bounds` from (0, 0) to the last pixel.
    BBitmap(BRect bounds, color_space colors);

    [[nodiscard]] BRect Bounds() const { return bounds_; }
    [[nodiscard]] color_space ColorSpace() const { return colors_; }
    [[nodiscard]] int32 Width() const { return width_; }
    [[nodiscard]] int32 RowCount() const { return height_; }
    [[nodiscard]] int32 BytesPerRow() const;
    [[nodiscard]] int32 BitsLength() const { return static_cast<int32>(bits_.size()); }
    [[nodiscard]] void* Bits() { return bits_.data(); }
    [[nodiscard]] const void* Bits() const { return bits_.data(); }
    // Copies as much of the data as fits.
    void SetBits(const void* data, std::size_t size);

    // The colour of one pixel, whatever the colour space.
    [[nodiscard]] rgb_color ColorAt(int32 column, int32 row) const;
    // The 256 colours of B_CMAP8: 32 greys, a cube of 6 x 6 x 6 colours from 32 on, the last index
    // (255) transparent.
    [[nodiscard]] static rgb_color SystemColor(uint8 index);

private:
    const BRect bounds_;
    const color_space colors_;
    const int32 width_;
    const int32 height_;
    std::vector<uint8> bits_;
};
