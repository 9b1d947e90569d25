// A picture of how a system's disc and trail will look in the displays. Rules as for CanvasView.
#pragma once

#include "Platform/Interface/Canvas/CanvasView.h"

class TrailPreview : public CanvasView {
public:
    struct Look {
        rgb_color trail;
        rgb_color disc;
        bool isTrailOn = false;
        bool isDiscOn = false;
        bool operator==(const Look&) const = default;
    };

    explicit TrailPreview(const char* name);

    void ShowLook(const Look& look);

    void FrameResized(BRect bounds) override;

private:
    void Draw();

    Look look_;
};
