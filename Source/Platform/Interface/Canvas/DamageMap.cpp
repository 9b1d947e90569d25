#include "Platform/Interface/Canvas/DamageMap.h"

DamageMap::DamageMap(int32 width, int32 height)
    : width_(width),
      height_(height),
      columns_(TileOf(width + kTileSize - 1)),
      rows_(TileOf(height + kTileSize - 1)),
      tiles_(std::size_t{columns_} * rows_, 0) {}

void DamageMap::Add(const DamageMap& other) {
    if (other.width_ != width_ || other.height_ != height_) return AddAll();
    for (std::size_t i = 0; i < tiles_.size(); i++)
        tiles_[i] |= other.tiles_[i];
    isEmpty_ = isEmpty_ && other.isEmpty_;
}

void DamageMap::AddAll() {
    Add(IntRect{0, 0, width_, height_});
}

void DamageMap::Clear() {
    if (isEmpty_) return;
    std::fill(tiles_.begin(), tiles_.end(), uint8{0});
    isEmpty_ = true;
}

std::vector<IntRect> DamageMap::Rects() const {
    std::vector<IntRect> rects;
    if (isEmpty_) return rects;
    std::size_t above = 0;  // the first run of the row above
    for (uint32 row = 0; row < rows_; row++) {
        const uint8* const tiles = &tiles_[std::size_t{row} * columns_];
        const auto top = static_cast<int32>(row) * kTileSize;
        const int32 bottom = std::min(top + kTileSize, height_);
        const std::size_t first = rects.size();
        for (uint32 column = 0; column < columns_; column++) {
            if (tiles[column] == 0) continue;
            const auto left = static_cast<int32>(column) * kTileSize;
            while (column < columns_ && tiles[column] != 0)
                column++;
            const auto right = std::min(static_cast<int32>(column) * kTileSize, width_);
            rects.push_back({left, top, right, bottom});
        }
        // A row with the same runs as the one above only makes those taller.
        const std::size_t count = rects.size() - first;
        bool isSame = count > 0 && first - above == count && rects[above].bottom == top;
        for (std::size_t i = 0; isSame && i < count; i++)
            isSame = rects[above + i].left == rects[first + i].left &&
                     rects[above + i].right == rects[first + i].right;
        if (isSame) {
            for (std::size_t i = above; i < first; i++)
                rects[i].bottom = bottom;
            rects.resize(first);
        } else {
            above = first;
        }
    }
    return rects;
}
