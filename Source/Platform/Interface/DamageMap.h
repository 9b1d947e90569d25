// Which parts of a picture were changed, in tiles of device pixels: cheap to mark many times, given
// back as few rectangles. A plain value.
#pragma once

#include <vector>

#include "PixelBuffer.h"

class DamageMap {
public:
    static constexpr int32 kTileSize = 32;

    DamageMap() = default;
    DamageMap(int32 width, int32 height);

    // Parts outside the picture do not count.
    void Add(const IntRect& rect);
    void Add(const DamageMap& other);
    void AddAll();
    void Clear();
    [[nodiscard]] bool IsEmpty() const { return isEmpty_; }

    // Rectangles that cover the damage and do not overlap: runs of tiles, joined downwards where
    // they have the same ends.
    [[nodiscard]] std::vector<IntRect> Rects() const;

private:
    int32 width_ = 0;
    int32 height_ = 0;
    int32 columns_ = 0;
    int32 rows_ = 0;
    bool isEmpty_ = true;
    std::vector<uint8> tiles_;
};
