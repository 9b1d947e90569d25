#include "Interface Widgets/SmartView.h"

// The view's centre keeps showing the same point when the view is resized.
SmartView::SmartView(const char* name, rgb_color low) : CanvasView(name, Anchor::kCenter, low) {}

void SmartView::SVFillRect(const BRect& rect, pattern fill) {
    LowerLayer().FillRect(rect, fill == B_SOLID_LOW ? LowColor() : high_);
}
