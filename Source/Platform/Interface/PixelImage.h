// Pixels as the toolkit's images: scaling, texts, PNG files. No state; any thread.
#pragma once

#include <string>

#include "Errors.h"
#include "PixelBuffer.h"

class BBitmap;
class QImage;

// An image that points into the buffer, which must outlive it.
[[nodiscard]] QImage AsImage(const PixelBuffer& pixels, double scale);
[[nodiscard]] QImage AsImage(PixelBuffer* pixels, double scale);

[[nodiscard]] PixelBuffer ScaledPixels(const PixelBuffer& pixels, int32 width, int32 height);

// Draws a text with the left end of its base line at a device pixel; where it may have drawn.
// Nothing where there are no fonts.
IntRect DrawText(PixelBuffer* pixels, const std::string& text, double x, double y, double scale,
                 rgb_color color);

// B_IO_ERROR if the file cannot be written.
[[nodiscard]] status_t WritePNG(const PixelBuffer& pixels, double scale, const std::string& path);

// An icon as an image, with its transparent pixels; null for null.
[[nodiscard]] QImage ToImage(const BBitmap* bitmap);
