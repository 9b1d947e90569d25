#include "Platform/Interface/Canvas/BBitmap.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int32 kGreys = 32;
constexpr int32 kCubeSide = 6;
constexpr int32 kCubeColors = kCubeSide * kCubeSide * kCubeSide;
constexpr int32 kTransparent = 255;

uint8 Share(int32 part, int32 whole) {
    return static_cast<uint8>(255 * part / whole);
}

}  // namespace

BBitmap::BBitmap(BRect bounds, color_space colors)
    : bounds_(bounds),
      colors_(colors),
      width_(std::max(static_cast<int32>(bounds.Width()) + 1, 0)),
      height_(std::max(static_cast<int32>(bounds.Height()) + 1, 0)),
      bits_(static_cast<std::size_t>(BytesPerRow()) * static_cast<std::size_t>(height_), 0) {}

int32 BBitmap::BytesPerRow() const {
    return colors_ == B_RGB32 ? 4 * width_ : width_;
}

void BBitmap::SetBits(const void* data, std::size_t size) {
    std::memcpy(bits_.data(), data, std::min(size, bits_.size()));
}

rgb_color BBitmap::ColorAt(int32 column, int32 row) const {
    if (column < 0 || column >= width_ || row < 0 || row >= height_) return {};
    const uint8* const start = bits_.data() + static_cast<std::ptrdiff_t>(row) * BytesPerRow();
    if (colors_ == B_CMAP8) return SystemColor(start[column]);
    const uint8* const pixel = start + 4 * column;
    return {pixel[2], pixel[1], pixel[0], pixel[3]};
}

rgb_color BBitmap::SystemColor(uint8 index) {
    if (index == kTransparent) return {0, 0, 0, 0};
    if (index < kGreys) {
        const uint8 grey = Share(index, kGreys - 1);
        return {grey, grey, grey, 255};
    }
    const int32 cube = std::min(index - kGreys, kCubeColors - 1);
    return {Share(cube / (kCubeSide * kCubeSide), kCubeSide - 1),
            Share(cube / kCubeSide % kCubeSide, kCubeSide - 1),
            Share(cube % kCubeSide, kCubeSide - 1), 255};
}
