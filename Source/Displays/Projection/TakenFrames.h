// Where texts lie over a picture already, so that others can keep off them. A plain value.
#pragma once

#include <algorithm>
#include <vector>

#include "Platform/Interface/Canvas/CanvasView.h"
#include "Platform/Interface/Canvas/LineClip.h"

class TakenFrames {
public:
    TakenFrames() = default;
    TakenFrames(const CanvasView& view, const std::vector<OverlayItem>& texts) {
        for (const OverlayItem& text : texts)
            Add(view.FrameOf(text));
    }

    void Add(BRect frame) { frames_.push_back(frame); }
    [[nodiscard]] bool IsFree(BRect frame) const {
        return std::none_of(frames_.begin(), frames_.end(), [&](const BRect& taken) {
            return taken.left < frame.right && frame.left < taken.right &&
                   taken.top < frame.bottom && frame.top < taken.bottom;
        });
    }
    [[nodiscard]] bool IsFree(BPoint point) const {
        return std::none_of(frames_.begin(), frames_.end(),
                            [&](const BRect& taken) { return IsInside(point, taken); });
    }

private:
    std::vector<BRect> frames_;
};
