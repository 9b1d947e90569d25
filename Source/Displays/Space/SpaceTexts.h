// What stands over a picture of space: names, the numbers of rings, axis letters, scale bar and
// time. No state; the caller holds the lock of the view that it passes in.
#pragma once

#include <string>
#include <vector>

#include "Displays/Space/SpaceDrawing.h"
#include "Platform/Interface/Canvas/CanvasView.h"

class UnitTable;

// In which units and words. None is owned; a null table: without scale bar and numbers, or time.
struct SpaceUnits {
    const UnitTable* distances = nullptr;
    double distance = 1.0;  // m, of the unit that the user prefers
    const UnitTable* times = nullptr;
    double time = 1.0;  // s
    std::string timePrefix;
};

// Texts that would cover one another are left out, the less important ones: names of light bodies
// first. `view` is the one that shows the picture.
[[nodiscard]] std::vector<OverlayItem> SpaceTexts(const SpaceDrawing& drawing,
                                                  const SpaceScene& scene,
                                                  const SpaceOptions& options, const SpaceMap& map,
                                                  const SpaceUnits& units, const CanvasView& view);
