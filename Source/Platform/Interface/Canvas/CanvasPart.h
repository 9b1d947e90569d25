// The window server's half of a canvas view: the widget, the pixels that the user sees, and the
// input. The two sides meet here under two short mutexes: the place that the view shows, and the
// front buffer, which is held only while pixels are copied.
#pragma once

#include <atomic>
#include <mutex>
#include <vector>

#include "Platform/Interface/Canvas/Canvas.h"
#include "Platform/Interface/Canvas/CanvasView.h"
#include "Platform/Interface/Server/InputQueue.h"
#include "Platform/Interface/Server/ViewPart.h"

class QPaintEvent;

class CanvasPart : public ViewPart {
public:
    // What the view shows of the canvas.
    struct Place {
        BPoint anchorPoint;
        double width = 0.0;  // logical pixels
        double height = 0.0;
        double scale = 1.0;
    };

    CanvasPart(CanvasView::Anchor anchor, rgb_color background);

    // --- Any thread ---
    [[nodiscard]] Place GetPlace() const;
    void SetAnchorPoint(BPoint point);
    void SetSize(double width, double height, double scale);
    // The device pixels shown, counted from the point where coordinates begin.
    [[nodiscard]] IntRect DeviceArea(const Place& place) const;
    [[nodiscard]] BRect Bounds(const Place& place) const;

    // Takes over what is damaged in the picture and has it shown.
    void Publish(const Canvas& picture, const std::vector<OverlayItem>& overlay);
    [[nodiscard]] int64 CountShown() const { return shown_; }

    [[nodiscard]] std::deque<InputEvent> TakeInput() { return input_.TakeAll(); }

    // --- Server's thread ---
    void SetHandle(const BMessenger& handle) override;

protected:
    QWidget* Make() override;

private:
    class Surface;

    void Put(const InputEvent& event);
    // A point of the widget as a point of the canvas.
    [[nodiscard]] BPoint ToCanvas(QPointF point) const;
    void UpdateWidget();
    void Paint(QWidget* surface, const QPaintEvent& event);
    void SizeChanged(const QWidget& surface);

    const CanvasView::Anchor anchor_;

    mutable std::mutex placeMutex_;
    Place place_;

    std::mutex frontMutex_;
    PixelBuffer front_;
    IntPoint frontOrigin_;  // of its left-top pixel, as in DeviceArea
    double frontScale_ = 0.0;
    rgb_color background_;
    std::vector<OverlayItem> overlay_;
    DamageMap pending_;  // published and not yet asked to be painted
    bool isUpdateQueued_ = false;
    bool hasUnpaintedFrame_ = false;  // published and not yet painted

    std::atomic<int64> shown_{0};
    InputQueue input_;
};
