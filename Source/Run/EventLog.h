// Writes what happens to the bodies of a run as comma-separated values: contacts, closest
// approaches, crossings of the plane z = 0 and escapes, each at the very time that the motion
// itself tells. Owned by the runner; works on the calculation thread, which waits meanwhile.
//
// Massless bodies do not see each other. A body escapes where it is unbound and beyond a distance,
// both seen from the centre of mass of the others.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Calculation/EscapeRule.h"
#include "Calculation/MotionWatcher.h"
#include "Run/OutputFile.h"
#include "Run/RunRecord.h"

class EventLog final : public MotionWatcher {
public:
    static constexpr std::string_view kHeader = "time,event,id1,name1,id2,name2,distance,speed\n";

    // 0, or the errno of what failed; so does Close. Changes nothing in a file that is there.
    [[nodiscard]] int Open(const std::string& path);
    [[nodiscard]] bool IsNew() const { return file_.Size().value_or(0) == 0; }
    [[nodiscard]] int Close();
    // One of these, before a run. A distance, m; none: ten times that of the farthest body where
    // the run begins.
    void Begin(std::optional<double> escapeDistance);
    void GoOn(const EventMark& mark);
    // As ReportFile has it; while the calculator is parked.
    [[nodiscard]] std::optional<EventMark> Mark();

    void BodiesAre(double time, const std::vector<Body*>& bodies, int32 massive) override;
    void Moved(const Piece& piece) override;
    void Touched(double time, const BodyArrays& bodies,
                 const std::vector<CollidingPair>& pairs) override;

private:
    struct Event {
        double time;
        std::string_view name;
        int32 body;
        int32 other;      // -1: none
        PathPoint apart;  // of the body, seen from the other or from where it is measured
    };

    void Sample(const Piece& piece);
    void FindApproaches(const Piece& piece);
    [[nodiscard]] bool MayApproach(std::size_t body, std::size_t other) const;
    void FindApproaches(const Piece& piece, int32 body, int32 other);
    void FindCrossings(const Piece& piece);
    void FindCrossing(const Piece& piece, int32 body, double from, double to);
    void FindEscapes(const Piece& piece);
    void FindEscapes(const Piece& piece, int32 body);
    // Seen from the centre of mass of the others.
    [[nodiscard]] PathPoint SeenAt(const Piece& piece, int32 body, double theta) const;
    [[nodiscard]] double NearestOrFarthest(const Piece& piece, int32 body) const;
    void Write(const Event& event);
    [[nodiscard]] int32 Count() const { return static_cast<int32>(ids_.size()); }

    OutputFile file_;
    std::optional<double> escapeDistance_;
    int32 massive_ = 0;
    std::vector<int64> ids_;
    std::vector<std::string> names_;
    EscapeRule escape_;
    std::vector<PathPoint> before_;  // at the last report
    std::vector<PathPoint> now_;
    double way_ = 1.0;                     // -1: time falls
    std::vector<ThreeVector> pullBefore_;  // accelerations at the same moments, m/s2
    std::vector<ThreeVector> pull_;
    std::vector<PathPoint> seenBefore_;  // likewise, from the centre of mass of the others
    std::vector<PathPoint> seen_;
    std::vector<Event> events_;
    std::string row_;
};
