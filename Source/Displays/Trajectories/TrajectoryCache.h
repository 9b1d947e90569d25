// What a trajectory view keeps of the bodies, and what it computes from a batch of positions: the
// polylines of the trails and the places of the discs. Draws nothing and locks nothing: the view
// that owns it is locked. Bodies are counted in mass order. Positions in metres, points in pixels.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "Displays/Trajectories/Extent.h"
#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"
#include "Simulation/History/TurningAxes.h"

class Body;
class TrajectoryMap;

// A frame of reference at one moment: what stands still in it, and how it is turned. A plain value.
struct FrameMoment {
    ThreeVector origin;               // m
    std::optional<TurningAxes> axes;  // none: it does not turn

    // A place as the frame has it, m.
    [[nodiscard]] ThreeVector See(const ThreeVector& place) const {
        const ThreeVector way = place - origin;
        return axes ? axes->See(way) : way;
    }
};

class TrajectoryCache {
public:
    struct Disc {
        rgb_color color;
        bool isOn = false;
        double bodyRadius = 0.0;
        float radius = 0.0f;
        BRect domain;   // the square that it covers, from (0, 0)
        BPoint center;  // where it was last drawn, and where the next piece of the trail starts
    };

    // What marks a body whose disc is smaller: a point, and a ring of sky around it, which parts it
    // from the body's own trail.
    static constexpr float kMarkRadius = 1.5f;
    static constexpr float kMarkReach = 2.5f;

    // `map` is not owned.
    explicit TrajectoryCache(TrajectoryMap* map) : map_(map) {}

    // --- Sizes ---
    // For batches of so many reports of so many bodies, or of fewer where there is no memory.
    void ResizeCache(int32 reports, int32 bodies);
    // The same if the tables are too small for that.
    void ResizeForReports(int32 reports, int32 bodies);
    [[nodiscard]] int32 CountBodies() const { return static_cast<int32>(discs_.size()); }
    [[nodiscard]] int32 Capacity() const { return capacity_; }

    // --- What bodies look like, and where they are ---
    void CacheDrawOptions(const std::vector<Body*>& bodies);
    // After a change of the scale.
    void MakeDiscDomains();
    // Whether small discs are to be marked. MakeDiscDomains makes them have room for it.
    void SetMarked(bool areMarked) { areMarked_ = areMarked; }
    [[nodiscard]] bool IsMarked(const Disc& disc) const {
        return areMarked_ && disc.radius < kMarkRadius;
    }
    // The bodies are where the model has them; there is no batch.
    void CacheInitialPositions(const std::vector<Body*>& bodies);
    [[nodiscard]] const Disc& DiscAt(int32 body) const {
        return discs_[static_cast<std::size_t>(body)];
    }
    void SetDiscCenter(int32 body, BPoint center) {
        discs_[static_cast<std::size_t>(body)].center = center;
    }
    // Where the body's last position is seen; `frame`: LastFrame().
    [[nodiscard]] BPoint LastPoint(int32 body, const FrameMoment& frame) const;
    [[nodiscard]] ThreeVector LastPosition(int32 body) const;
    // All disc centres become the points of the last positions.
    void SetLastDisp();
    // The square of a body's disc around a point, in whole pixels.
    [[nodiscard]] BRect DomainCenteredAt(int32 body, BPoint point) const;

    // --- What stands still ---
    // Positions are shown relative to the mean position of these bodies, weighted; of none: as they
    // are. Bodies that are not there do not count.
    struct Member {
        int32 body;
        double weight;
        bool operator==(const Member&) const = default;
    };
    void SetReference(std::vector<Member> members) { reference_ = std::move(members); }
    [[nodiscard]] const std::vector<Member>& Reference() const { return reference_; }
    // Where it is at the last positions; zero for none.
    [[nodiscard]] ThreeVector LastReference() const { return LastFrame().origin; }
    // And turned with the way from one body to another.
    struct Turning {
        int32 first;
        int32 second;
        ThreeVector axis;
        bool operator==(const Turning&) const = default;
    };
    void SetTurning(const std::optional<Turning>& turning) { turning_ = turning; }
    [[nodiscard]] const std::optional<Turning>& GetTurning() const { return turning_; }
    [[nodiscard]] FrameMoment LastFrame() const { return FrameIn(lastPositions_, 0); }

    // --- Batches ---
    // Positions as the calculator lays them out: x, y and z of every body, report by report.
    void ReadPositions(int32 reports, const double* positions);
    // A batch was read that is not drawn yet.
    [[nodiscard]] bool HasBatch() const { return reportsDrawn_ < reports_; }
    void SetDrawn() { reportsDrawn_ = reports_; }
    // The least length in pixels of a piece of a trail, measured along the path.
    void SetSegmentLength(float length) { segmentLength_ = length; }
    // Makes the batch's trails: lines from the disc's centre on that are at least the segment
    // length long, the last one excepted, which ends at the last position.
    void MakeTrails();
    // The points of the trail that MakeTrails made; none if the body leaves no trail.
    struct Trail {
        const BPoint* points;
        int32 count;
        rgb_color color;
    };
    [[nodiscard]] Trail TrailAt(int32 body) const;
    // Where trails were made since it was last forgotten, in the frame.
    [[nodiscard]] const Extent& TrailExtent() const { return trailExtent_; }
    void ForgetTrailExtent() { trailExtent_ = {}; }
    // The last report of the batch becomes the last positions.
    void SetLastR();

private:
    struct Pen {
        rgb_color color;
        bool isOn = false;
        BPoint end;              // of the line that is being extended
        float travelled = 0.0f;  // since the last point of the trail, |dx| + |dy|
        int32 count = 0;         // points of the trail so far
    };

    void ResizeTables(std::size_t reports, std::size_t bodies);
    [[nodiscard]] ThreeVector ReferenceIn(const double* positions) const;
    [[nodiscard]] FrameMoment FrameIn(const std::vector<double>& positions,
                                      std::size_t first) const;
    [[nodiscard]] std::size_t TrailStride() const {
        return static_cast<std::size_t>(capacity_) + 1;
    }

    TrajectoryMap* const map_;
    int32 capacity_ = 0;
    int32 reports_ = 0;
    int32 reportsDrawn_ = 0;
    float segmentLength_ = 2.0f;
    std::vector<double> positions_;
    std::vector<double> lastPositions_;
    std::vector<BPoint> trailPoints_;  // a row for each body
    std::vector<Pen> pens_;
    std::vector<Disc> discs_;
    std::vector<Member> reference_;
    std::optional<Turning> turning_;
    bool areMarked_ = false;
    Extent trailExtent_;
};
