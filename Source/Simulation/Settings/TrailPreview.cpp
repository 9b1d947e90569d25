#include "Simulation/Settings/TrailPreview.h"

#include <cmath>
#include <numbers>

#include "Displays/Trajectories/TrajectoryView.h"

namespace {

constexpr int32 kLines = 60;
constexpr float kDiscRadius = 8.0f;

// The trail is an arc that comes in from the left and ends in the disc.
BPoint PlaceOnTrail(BRect bounds, double part) {
    const double angle = std::numbers::pi * (1.05 - 0.85 * part);
    const auto width = static_cast<double>(bounds.Width());
    const auto height = static_cast<double>(bounds.Height());
    return {static_cast<float>(static_cast<double>(bounds.left) +
                               width * (0.5 + 0.46 * std::cos(angle))),
            static_cast<float>(static_cast<double>(bounds.bottom) -
                               height * (0.12 + 0.7 * std::sin(angle)))};
}

}  // namespace

TrailPreview::TrailPreview(const char* name)
    : CanvasView(name, Anchor::kCenter, TrajectoryView::kSky) {}

void TrailPreview::ShowLook(const Look& look) {
    if (look == look_) return;
    look_ = look;
    Draw();
    Sync();
}

void TrailPreview::FrameResized(BRect /*bounds*/) {
    Draw();
}

void TrailPreview::Draw() {
    Erase();
    const BRect bounds = Bounds();
    if (look_.isTrailOn) {
        LowerLayer().BeginLineArray(kLines);
        for (int32 i = 0; i < kLines; i++)
            LowerLayer().AddLine(PlaceOnTrail(bounds, static_cast<double>(i) / kLines),
                                 PlaceOnTrail(bounds, static_cast<double>(i + 1) / kLines),
                                 look_.trail);
        LowerLayer().EndLineArray();
        SyncLayers();
    }
    if (look_.isDiscOn) DrawDisc(PlaceOnTrail(bounds, 1.0), kDiscRadius, look_.disc);
}
