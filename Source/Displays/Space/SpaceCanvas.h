// A view that shows space through a camera. Needs no window: a program without one may paint and
// save the picture. Threads as for CanvasView.
#pragma once

#include <vector>

#include "Displays/Space/SpaceDrawing.h"
#include "Displays/Space/SpaceRasterizer.h"
#include "Displays/Space/SpaceTexts.h"
#include "Platform/Interface/Canvas/CanvasView.h"

class SpaceCanvas : public CanvasView {
public:
    // `threads` as for SpaceRasterizer.
    explicit SpaceCanvas(const char* name, int32 threads = 0);

    // Makes the picture, and shows it.
    void Paint(const SpaceScene& scene, const Camera& camera, const SpaceOptions& options,
               const SpaceUnits& units, bool isCoarse = false);
    // How the camera sees in a view of this size, in device pixels.
    [[nodiscard]] SpaceMap MapOf(const Camera& camera) const;
    // The parts of the camera's focus that its sides are long.
    void FitCamera(const std::vector<ThreeVector>& places, Camera* camera) const;
    // A way on the screen, in parts of the camera's focus.
    [[nodiscard]] double PartOfFocus(float pixels) const;
    [[nodiscard]] BPoint Middle() const;
    [[nodiscard]] bool IsEmpty() const;
    // Of the picture that was painted last: the body whose disc the point is on or near to, the
    // nearest of them; -1 for none.
    [[nodiscard]] int32 BodyAt(BPoint point) const;
    [[nodiscard]] const PixelBuffer& Pixels() const { return pixels_; }
    // The point of the view that a device pixel of the picture is.
    [[nodiscard]] BPoint PointOf(const SpaceMap::Point& pixel) const;
    // Shows the texts over the picture that was painted last as they are now.
    void ShowTexts();

protected:
    // What stands over the picture beside its own texts.
    virtual void AddOverlay(std::vector<OverlayItem>* /*items*/) const {}

private:
    SpaceRasterizer rasterizer_;
    PixelBuffer pixels_;
    std::vector<SpaceDrawing::Disc> discs_;
    std::vector<OverlayItem> texts_;
};
