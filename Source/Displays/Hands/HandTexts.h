// What stands over a picture while a body is selected or held: arrow, ring, readout, the coming
// orbit. No state; the caller holds the display's lock.
#pragma once

#include <string>
#include <vector>

#include "Displays/Base/DisplayContext.h"
#include "Displays/Hands/BodyGrip.h"
#include "Displays/Hands/HandSight.h"
#include "Displays/Hands/OrbitPreview.h"
#include "Platform/Interface/Canvas/CanvasView.h"

void AddArrow(BPoint from, BPoint to, rgb_color color, std::vector<OverlayItem>* items);
// Around a disc.
void AddRing(BPoint center, float radius, rgb_color color, std::vector<OverlayItem>* items);
// The body as it would be, and beside the pointer its place or velocity in the user's units,
// relative to what the display shows still.
void AddGrip(const BodyGrip& grip, const HandSight& sight, BPoint pointer, const CanvasView& view,
             const DisplayContext& context, std::vector<OverlayItem>* items);
// Between two discs, and what was measured beside its middle.
void AddMeasuredLine(BPoint from, BPoint to, const std::string& text, const CanvasView& view,
                     rgb_color color, std::vector<OverlayItem>* items);
// The coming orbit, and what it ends at.
void AddPath(const OrbitPreview::Path& path, const HandSight& sight, const CanvasView& view,
             const DisplayContext& context, std::vector<OverlayItem>* items);
