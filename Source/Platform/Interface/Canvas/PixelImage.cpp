#include "Platform/Interface/Canvas/PixelImage.h"

#include <QBuffer>
#include <QImage>
#include <algorithm>

#include "Platform/Interface/Canvas/BBitmap.h"

namespace {

constexpr qsizetype kPixelBytes = sizeof(Pixel);

// `Bytes` is const or not: an image of constant bytes copies them before it is drawn into.
template <typename Bytes>
QImage Wrap(Bytes* bytes, const PixelBuffer& pixels, double scale) {
    QImage image(bytes, pixels.Width(), pixels.Height(), pixels.Width() * kPixelBytes,
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    return image;
}

}  // namespace

QImage AsImage(const PixelBuffer& pixels, double scale) {
    return Wrap(reinterpret_cast<const uchar*>(pixels.Row(0)), pixels, scale);
}

QImage AsImage(PixelBuffer* pixels, double scale) {
    return Wrap(reinterpret_cast<uchar*>(pixels->Row(0)), *pixels, scale);
}

PixelBuffer ScaledPixels(const PixelBuffer& pixels, int32 width, int32 height) {
    PixelBuffer result(width, height, 0);
    if (pixels.Bounds().IsEmpty() || result.Bounds().IsEmpty()) return result;
    const QImage scaled =
        AsImage(pixels, 1.0)
            .scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_RGB32);
    for (int32 y = 0; y < height; y++) {
        const auto* const row = reinterpret_cast<const Pixel*>(scaled.constScanLine(y));
        std::transform(row, row + width, result.Row(y),
                       [](Pixel pixel) { return pixel | kOpaque; });
    }
    return result;
}

std::vector<std::byte> EncodePNG(const PixelBuffer& pixels) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!AsImage(pixels, 1.0).save(&buffer, "PNG")) return {};
    const auto* const bytes = reinterpret_cast<const std::byte*>(buffer.data().constData());
    return {bytes, bytes + buffer.size()};
}

QImage ToImage(const BBitmap* bitmap) {
    if (bitmap == nullptr) return {};
    QImage image(bitmap->Width(), bitmap->RowCount(), QImage::Format_ARGB32);
    for (int32 y = 0; y < bitmap->RowCount(); y++)
        for (int32 x = 0; x < bitmap->Width(); x++) {
            const rgb_color color = bitmap->ColorAt(x, y);
            image.setPixelColor(x, y, QColor(color.red, color.green, color.blue, color.alpha));
        }
    return image;
}
