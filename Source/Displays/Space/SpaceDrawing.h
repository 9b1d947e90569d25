// Finds what of a scene is seen where, through a camera: what there is to be drawn, and where texts
// belong. For one picture; one thread at a time.
#pragma once

#include <vector>

#include "Displays/Space/CurveStrokes.h"
#include "Displays/Space/SpaceItems.h"
#include "Displays/Space/SpaceMap.h"
#include "Displays/Space/SpaceOptions.h"
#include "Displays/Space/SpaceScene.h"

class WorkerTeam;

class SpaceDrawing {
public:
    // A body as it is seen. In mass order.
    struct Disc {
        int32 body;
        SpaceMap::Point center;
        double radius;
    };
    // A place where a length is written, or the letter of an axis.
    struct Mark {
        SpaceMap::Point where;
        double length;  // m, as the next one
        double unit;
        char letter;
    };

    // `scale`: device pixels to a logical one.
    SpaceDrawing(const SpaceScene& scene, const Camera& camera, const SpaceOptions& options,
                 const SpaceMap& map, double scale);

    // While the camera moves, coarsely. The threads help.
    void Find(bool isCoarse, WorkerTeam* team);
    [[nodiscard]] const SpaceItems& Items() const { return items_; }
    [[nodiscard]] const std::vector<Disc>& Discs() const { return discs_; }
    [[nodiscard]] const std::vector<Mark>& Marks() const { return marks_; }
    [[nodiscard]] double Scale() const { return scale_; }

    // More than can be drawn as they are while the camera moves.
    [[nodiscard]] static bool HasManySamples(const SpaceScene& scene);

private:
    [[nodiscard]] CurveStrokes MakeStrokes(std::vector<Stroke>* into, bool isCoarse) const;
    void FindBalls();
    void FindEcliptic();
    void FindTrails(bool isCoarse, WorkerTeam* team);
    void FindOrbits();
    void FindArrows(const std::vector<ThreeVector>& ways, double length, double strength);
    void FindRing();
    void FindAxes();
    void AddArrow(CurveStrokes* strokes, SpaceMap::Point from, SpaceMap::Point to,
                  Pixel color) const;
    [[nodiscard]] bool IsInPicture(SpaceMap::Point point) const;

    const SpaceScene& scene_;
    const Camera& camera_;
    const SpaceOptions& options_;
    const SpaceMap& map_;
    const double scale_;
    const std::size_t stride_;  // of coarse trails: of so many samples one is drawn
    SpaceItems items_;
    std::vector<Disc> discs_;
    std::vector<Mark> marks_;
};
