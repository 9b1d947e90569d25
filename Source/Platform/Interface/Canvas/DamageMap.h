// Which parts of a picture were changed, in tiles of device pixels: cheap to mark many times, given
// back as few rectangles. A plain value.
#pragma once

#include <vector>

#include "Platform/Interface/Canvas/PixelBuffer.h"

class DamageMap {
public:
    static constexpr int32 kTileSize = 32;

    DamageMap() = default;
    DamageMap(int32 width, int32 height);

    // Parts outside the picture do not count.
    void Add(const IntRect& rect) {
        const IntRect area = Intersection(rect, {0, 0, width_, height_});
        if (area.IsEmpty()) return;
        isEmpty_ = false;
        const uint32 left = TileOf(area.left);
        const uint32 right = TileOf(area.right - 1);
        const uint32 bottom = TileOf(area.bottom - 1);
        for (uint32 row = TileOf(area.top); row <= bottom; row++)
            for (uint32 column = left; column <= right; column++)
                tiles_[std::size_t{row} * columns_ + column] = 1;
    }
    void Add(const DamageMap& other);
    void AddAll();
    void Clear();
    [[nodiscard]] bool IsEmpty() const { return isEmpty_; }

    // Rectangles that cover the damage and do not overlap: runs of tiles, joined downwards where
    // they have the same ends.
    [[nodiscard]] std::vector<IntRect> Rects() const;

private:
    [[nodiscard]] static uint32 TileOf(int32 pixel) {
        return static_cast<uint32>(pixel) / uint32{kTileSize};
    }

    int32 width_ = 0;
    int32 height_ = 0;
    uint32 columns_ = 0;
    uint32 rows_ = 0;
    bool isEmpty_ = true;
    std::vector<uint8> tiles_;
};
