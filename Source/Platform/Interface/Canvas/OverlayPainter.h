// Draws the texts and scale bars over a picture. No state; any thread, where there are fonts.
#pragma once

#include <QPointF>
#include <QRectF>
#include <vector>

#include "Platform/Interface/Canvas/CanvasView.h"
#include "Platform/Support/GraphicsDefs.h"

class QPainter;

// `leftTop` is the point of the canvas in the view's left-top pixel; sizes in logical pixels.
void PaintOverlay(QPainter* painter, const std::vector<OverlayItem>& items, QSizeF viewSize,
                  BPoint leftTop);
// What an item may draw on, in the view.
[[nodiscard]] QRectF OverlayBox(const OverlayItem& item, QSizeF viewSize, BPoint leftTop);
