#include "Displays/Space/SpaceCanvas.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kHoverRadius = 8.0;  // logical pixels, as the next one
// Of bodies that are no farther apart the heaviest is meant.
constexpr double kTold = 2.0;

}  // namespace

SpaceCanvas::SpaceCanvas(const char* name, int32 threads)
    : CanvasView(name, Anchor::kCenter, SpaceOptions().Sky()), rasterizer_(threads) {}

SpaceMap SpaceCanvas::MapOf(const Camera& camera) const {
    const BRect bounds = Bounds();
    const double scale = UpperLayer().Scale();
    return {camera, scale * (static_cast<double>(bounds.Width()) + 1.0),
            scale * (static_cast<double>(bounds.Height()) + 1.0)};
}

BPoint SpaceCanvas::Middle() const {
    const BRect bounds = Bounds();
    return {(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
}

bool SpaceCanvas::IsEmpty() const {
    const BRect bounds = Bounds();
    return bounds.right < bounds.left || bounds.bottom < bounds.top;
}

double SpaceCanvas::PartOfFocus(float pixels) const {
    return static_cast<double>(pixels) * UpperLayer().Scale() / MapOf({}).Focus();
}

void SpaceCanvas::FitCamera(const std::vector<ThreeVector>& places, Camera* camera) const {
    const SpaceMap map = MapOf(*camera);
    camera->Fit(places, map.Width() / map.Focus(), map.Height() / map.Focus());
}

void SpaceCanvas::Paint(const SpaceScene& scene, const Camera& camera, const SpaceOptions& options,
                        const SpaceUnits& units, bool isCoarse) {
    const double scale = UpperLayer().Scale();
    const SpaceMap map = MapOf(camera);
    const auto width = static_cast<int32>(std::ceil(map.Width()));
    const auto height = static_cast<int32>(std::ceil(map.Height()));
    if (IsEmpty()) return;
    if (pixels_.Width() != width || pixels_.Height() != height)
        pixels_ = PixelBuffer(width, height, ToPixel(options.Sky()));
    SpaceDrawing drawing(scene, camera, options, map, scale);
    drawing.Find(isCoarse, rasterizer_.Team());
    rasterizer_.Draw(drawing.Items(), ToPixel(options.Sky()), std::max(scale, 1.0), &pixels_);
    SetBackground(options.Sky());
    const BRect bounds = Bounds();
    UpperLayer().CopyFrom(pixels_, {bounds.left, bounds.top});
    texts_ = SpaceTexts(drawing, scene, options, map, units, *this);
    discs_ = drawing.Discs();
    ShowTexts();
}

BPoint SpaceCanvas::PointOf(const SpaceMap::Point& pixel) const {
    const BRect bounds = Bounds();
    const double scale = UpperLayer().Scale();
    return {bounds.left + static_cast<float>(pixel.x / scale) - 0.5f,
            bounds.top + static_cast<float>(pixel.y / scale) - 0.5f};
}

void SpaceCanvas::ShowTexts() {
    std::vector<OverlayItem> items = texts_;
    AddOverlay(&items);
    SetOverlay(std::move(items));
    Sync();
}

int32 SpaceCanvas::BodyAt(BPoint point) const {
    const BRect bounds = Bounds();
    const double scale = UpperLayer().Scale();
    const double x = scale * (static_cast<double>(point.x - bounds.left) + 0.5);
    const double y = scale * (static_cast<double>(point.y - bounds.top) + 0.5);
    int32 found = -1;
    double least = 0.0;
    for (const SpaceDrawing::Disc& disc : discs_) {
        const double away = std::hypot(x - disc.center.x, y - disc.center.y);
        if (away > std::max(disc.radius, scale * kHoverRadius)) continue;
        if (found >= 0 && away > least - scale * kTold) continue;
        found = disc.body;
        least = away;
    }
    return found;
}
