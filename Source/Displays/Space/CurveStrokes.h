// Makes strokes of curves in space, as a camera sees them: as few as keep them smooth, none where
// they are not seen. For as long as one picture is made; one thread at a time.
#pragma once

#include <array>
#include <vector>

#include "Displays/Space/SpaceItems.h"
#include "Displays/Space/SpaceMap.h"
#include "Displays/Trajectories/KeptTrails.h"

// How a curve's colour fades into the sky with distance and age. A plain value.
class StrokeShades {
public:
    StrokeShades(rgb_color color, rgb_color sky);

    // 1 is the colour itself.
    [[nodiscard]] Pixel At(double strength) const {
        const auto shade = static_cast<int32>(strength * kShades);
        return shades_[static_cast<std::size_t>(shade < 0 ? 0 : shade > kShades ? kShades : shade)];
    }
    // What is near is brighter than what is far.
    [[nodiscard]] static double Nearer(double nearness) { return 0.75 + 0.35 * nearness; }

private:
    // Pieces that follow one another have one colour for a while, and join without a seam.
    static constexpr int32 kShades = 24;

    std::array<Pixel, kShades + 1> shades_;
};

class CurveStrokes {
public:
    // How far lines may be from the curve, and the least length of one; both in pixels.
    struct Detail {
        double flat = 0.25;
        double shortest = 1.0;
        std::size_t stride = 1;  // of so many samples one is taken, where all are joined
    };

    CurveStrokes(const SpaceMap& map, Detail detail, std::vector<Stroke>* into);

    // The colour of what follows, and how strong it is.
    void SetColor(const StrokeShades& shades, double strength = 1.0) {
        shades_ = &shades;
        strength_ = strength;
    }
    // -1: by the depth that it is seen in.
    void SetLayer(int32 layer) { layer_ = layer; }

    // Through the samples, weaker towards the times that are long ago. Whole: they are joined.
    void AddTrail(const KeptTrails::Trail& trail, bool isWhole);
    // The same without any age.
    void AddCurve(const std::vector<Sample>& samples) { AddCurve(samples, 0.0, 0.0); }
    // A straight line between two places.
    void AddLine(const ThreeVector& from, const ThreeVector& to);
    // Between two points of the picture.
    void AddFlat(SpaceMap::Point from, SpaceMap::Point to, Pixel color, int32 layer);

private:
    struct Curve {
        ThreeVector points[4];  // a cubic's control points, in camera coordinates
    };

    void AddCurve(const std::vector<Sample>& samples, double faintAt, double fullAt);
    void Flatten(const Curve& curve, int32 depth);
    void Follow(const Curve& curve, int32 lines);
    [[nodiscard]] bool IsShort(const Sample& sample, double time, const ThreeVector& seen) const;
    [[nodiscard]] bool IsOutside(const SpaceMap::Point* points, int32 count) const;
    void MoveTo(const ThreeVector& seen);
    void LineTo(const ThreeVector& seen, bool isLast);
    void Draw(const ThreeVector& seen, SpaceMap::Point to);

    const SpaceMap& map_;
    const Detail detail_;
    std::vector<Stroke>& into_;
    const StrokeShades* shades_ = nullptr;
    double strength_ = 1.0;
    std::size_t stride_ = 1;
    double age_ = 1.0;  // what of the strength is left by it
    int32 layer_ = -1;
    ThreeVector pen_;
    SpaceMap::Point penPoint_;
    bool isPenSeen_ = false;
    // Nothing beyond it is seen.
    double right_;
    double bottom_;
};
