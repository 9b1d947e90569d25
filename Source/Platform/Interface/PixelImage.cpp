#include "PixelImage.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "BBitmap.h"

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

IntRect DrawText(PixelBuffer* pixels, const std::string& text, double x, double y, double scale,
                 rgb_color color) {
    if (qGuiApp == nullptr || pixels->Bounds().IsEmpty()) return {};
    QImage image = AsImage(pixels, scale);
    QPainter painter(&image);
    const QPointF at(x / scale, y / scale);
    const QString string = QString::fromStdString(text);
    painter.setPen(QColor(color.red, color.green, color.blue));
    painter.drawText(at, string);
    const QRectF box = painter.fontMetrics().boundingRect(string).toRectF().translated(at);
    constexpr double kMargin = 2.0;
    const auto device = [scale](double value) { return static_cast<int32>(value * scale); };
    return {device(box.left() - kMargin), device(box.top() - kMargin),
            device(box.right() + kMargin), device(box.bottom() + kMargin)};
}

status_t WritePNG(const PixelBuffer& pixels, double scale, const std::string& path) {
    return AsImage(pixels, scale).save(QString::fromStdString(path), "PNG") ? B_OK : B_IO_ERROR;
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
