// The trails of kept runs, painted anew into a picture that has lost them: the newest pieces first,
// and a while at a time, so that nobody waits for the rest. Owned by a display and used with its
// lock.
#pragma once

#include <cstddef>
#include <vector>

#include "Displays/Trajectories/RepeatedCurves.h"
#include "Displays/Trajectories/TrajectoryMap.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"
#include "Simulation/History/Sample.h"

class PaintedTest;
class TrajectoryView;

class KeptTrails {
public:
    struct Trail {
        int64 body;
        rgb_color color;
        std::vector<Sample> samples;  // as they are to be seen: relative to what is followed
        // Between these times, in seconds, it fades towards the older one; equal: it does not.
        double faintAt = 0.0;
        double fullAt = 0.0;
        // It is in the background, and leaves what is painted as it is.
        bool isFaint = false;
    };

    // These are to be painted within the frames, and nothing else any more.
    void Begin(std::vector<Trail> trails, std::vector<BRect> frames, const PlaneMap& map);
    void Cancel() { Begin({}, {}, {}); }
    [[nodiscard]] bool IsDone() const { return trails_.empty(); }
    // Goes on for about so long, us. What is painted is under the discs, and seen when they are
    // drawn next.
    void Paint(TrajectoryView* view, bigtime_t time);

private:
    using Point = PlaneMap::Point;
    struct Unpainted {
        Trail trail;
        RepeatedCurves painted;
    };
    struct Curve {
        Point points[4];  // a cubic's control points
    };
    struct Mapped {
        Point place;
        Point velocity;  // pixels/s
    };

    void PaintPiece(Unpainted* rest, TrajectoryView* view, PaintedTest* isPainted);
    // The colour that is painted with from now on: that of a moment of the trail.
    void SetShade(const Unpainted& rest, double time, const TrajectoryView& view,
                  PaintedTest* isPainted);
    void Flatten(const Curve& curve, int32 depth, TrajectoryView* view,
                 const PaintedTest& isPainted);
    void Follow(const Curve& curve, int32 lines, TrajectoryView* view,
                const PaintedTest& isPainted);
    [[nodiscard]] static Point MiddleOf(const Curve& curve);
    [[nodiscard]] bool IsSeen(const Curve& curve) const;
    [[nodiscard]] Mapped Map(const Sample& sample) const;
    // Unless that is painted.
    void Step(Point to, TrajectoryView* view, const PaintedTest& isPainted);
    void LineTo(Point to, TrajectoryView* view);

    std::vector<Unpainted> trails_;
    std::vector<BRect> frames_;
    PlaneMap map_;
    rgb_color color_{};
    Point pen_;
};
