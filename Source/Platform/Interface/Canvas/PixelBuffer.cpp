#include "Platform/Interface/Canvas/PixelBuffer.h"

PixelBuffer::PixelBuffer(int32 width, int32 height, Pixel fill)
    : width_(std::max(width, 0)),
      height_(std::max(height, 0)),
      pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), fill) {}

void PixelBuffer::Fill(const IntRect& rect, Pixel pixel) {
    const IntRect area = Intersection(rect, Bounds());
    if (area.IsEmpty()) return;
    for (int32 y = area.top; y < area.bottom; y++)
        std::fill(Row(y) + area.left, Row(y) + area.right, pixel);
}

template <typename CopyRow>
void PixelBuffer::CopyRows(const PixelBuffer& source, const IntRect& area, IntPoint to,
                           CopyRow copy) {
    const IntPoint shift{to.x - area.left, to.y - area.top};
    const IntRect from =
        Intersection(Intersection(area, source.Bounds()), Bounds().MovedBy({-shift.x, -shift.y}));
    if (from.IsEmpty()) return;
    for (int32 y = from.top; y < from.bottom; y++)
        copy(source.Row(y) + from.left, source.Row(y) + from.right,
             Row(y + shift.y) + from.left + shift.x);
}

void PixelBuffer::Copy(const PixelBuffer& source, const IntRect& area, IntPoint to) {
    CopyRows(source, area, to, [](const Pixel* from, const Pixel* end, Pixel* row) {
        std::transform(from, end, row, [](Pixel pixel) { return pixel | kOpaque; });
    });
}

void PixelBuffer::TakeOver(const PixelBuffer& source, const IntRect& area, IntPoint to) {
    CopyRows(source, area, to,
             [](const Pixel* from, const Pixel* end, Pixel* row) { std::copy(from, end, row); });
}
