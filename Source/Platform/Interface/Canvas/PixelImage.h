// Pixels as the toolkit's images: scaling, PNG files. No state; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Platform/Interface/Canvas/PixelBuffer.h"

class BBitmap;
class QImage;

// An image that points into the buffer, which must outlive it.
[[nodiscard]] QImage AsImage(const PixelBuffer& pixels, double scale);
[[nodiscard]] QImage AsImage(PixelBuffer* pixels, double scale);

[[nodiscard]] PixelBuffer ScaledPixels(const PixelBuffer& pixels, int32 width, int32 height);

// The bytes of a PNG file.
[[nodiscard]] std::vector<std::byte> EncodePNG(const PixelBuffer& pixels);

// An icon as an image, with its transparent pixels; null for null.
[[nodiscard]] QImage ToImage(const BBitmap* bitmap);
