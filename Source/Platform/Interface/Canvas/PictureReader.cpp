#include "Platform/Interface/Canvas/PictureReader.h"

#include <QImageReader>

#include "Platform/Interface/Canvas/BBitmap.h"

std::shared_ptr<const BBitmap> ReadPicture(const std::string& path) {
    constexpr int kMaxSide = 8192;
    QImageReader reader(QString::fromStdString(path), "png");
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > kMaxSide || size.height() > kMaxSide) return nullptr;
    const QImage image = reader.read().convertToFormat(QImage::Format_ARGB32);
    if (image.isNull()) return nullptr;
    const BRect bounds{0.0f, 0.0f, static_cast<float>(image.width() - 1),
                       static_cast<float>(image.height() - 1)};
    auto bitmap = std::make_shared<BBitmap>(bounds, B_RGB32);
    bitmap->SetBits(image.constBits(), static_cast<std::size_t>(image.sizeInBytes()));
    return bitmap;
}
