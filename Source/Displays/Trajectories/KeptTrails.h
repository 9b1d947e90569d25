// The trails of kept runs, painted anew into a picture that has lost them: the newest pieces first,
// and a while at a time, so that nobody waits for the rest. Owned by a display and used with its
// lock.
#pragma once

#include <vector>

#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"
#include "Simulation/History/Sample.h"

class TrajectoryMap;
class TrajectoryView;

class KeptTrails {
public:
    struct Trail {
        rgb_color color;
        std::vector<Sample> samples;  // as they are to be seen: relative to what is followed
    };

    // These are to be painted within the frames, and nothing else any more.
    void Begin(std::vector<Trail> trails, std::vector<BRect> frames);
    void Cancel() { Begin({}, {}); }
    [[nodiscard]] bool IsDone() const { return trails_.empty(); }
    // Goes on for about so long, us. What is painted is under the discs, and seen when they are
    // drawn next.
    void Paint(TrajectoryView* view, TrajectoryMap* map, bigtime_t time);

private:
    struct Curve {
        BPoint points[4];  // a cubic's control points
    };

    void PaintPiece(Trail* trail, TrajectoryView* view, TrajectoryMap* map);
    void Flatten(const Curve& curve, int32 depth, TrajectoryView* view);
    [[nodiscard]] bool IsSeen(const Curve& curve) const;
    [[nodiscard]] bool IsPainted(BPoint to, const TrajectoryView& view) const;
    [[nodiscard]] bool IsPaintedAt(BPoint at, const TrajectoryView& view) const;
    void LineTo(BPoint to, TrajectoryView* view);

    std::vector<Trail> trails_;
    std::vector<BRect> frames_;
    rgb_color color_{};
    BPoint pen_;
};
