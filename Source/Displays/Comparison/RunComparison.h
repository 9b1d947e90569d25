// The other epoch that a display shows beside its own: the bodies of its run at the same time as
// rings, and how far the two are apart. The exact places of the other run are computed on a thread
// of their own, again and again during a run. Of an epoch whose run is not kept only the end is
// known. Owned by the display and used with its lock.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Displays/Comparison/Separation.h"
#include "Displays/Trajectories/TrajectoryCache.h"
#include "Platform/Interface/Canvas/CanvasView.h"
#include "Simulation/History/MomentFinder.h"
#include "Simulation/History/TimeLine.h"

class AbEpoch;
class Display;
class EpochPortal;
class RunHistory;
class TrajectoryDisplay;
struct BodyLabels;
struct DisplayContext;

class RunComparison {
public:
    // To the display: more is known of the distance.
    static constexpr uint32 kChanged = FourCC("cmpc");

    // None is owned.
    RunComparison(TrajectoryDisplay* display, const DisplayContext& context);
    ~RunComparison();
    RunComparison(const RunComparison&) = delete;
    RunComparison& operator=(const RunComparison&) = delete;

    void SetHistory(const RunHistory* history) { history_ = history; }
    [[nodiscard]] const RunHistory* History() const { return history_; }
    // Null: with nothing. The caller holds the model's read lock.
    void CompareWith(const AbEpoch* other, std::string name);
    // What is compared with may have gone, or be longer. Takes the model's read lock.
    void ModelChanged();
    [[nodiscard]] bool IsOn() const { return other_ != nullptr; }
    [[nodiscard]] const AbEpoch* Other() const { return other_; }
    // Of the runs that led to the other epoch the one that the time lies in, or the last one if it
    // is over by then; null: none that is kept.
    [[nodiscard]] const AbEpoch* RunAt(double time) const;
    // What is known of the distance is not true any more.
    void Forget();
    // Whether that line is to be told: what is known has changed since the last look.
    [[nodiscard]] std::optional<std::string> TakeDistance(double unit, const BodyLabels& labels);

    // The display shows its bodies as they are at that time, to the bit: how far apart are they?
    void Measure(double time, const BodyLabels& labels);
    // Rings around where bodies are in the other run at that time.
    void AddRings(double time, const BodyLabels& labels, std::vector<OverlayItem>* items) const;
    // What is compared, and the distance if it is known. `unit`: of length, m.
    [[nodiscard]] std::vector<std::string> Lines(double time, double unit,
                                                 const BodyLabels& labels) const;

private:
    struct Look {
        rgb_color color;
        double radius;  // m
    };
    struct Found {
        double time;  // s
        std::optional<Separation> separation;
    };

    void ReadEnd(const AbEpoch& other);
    void NoteFound(const MomentFinder::Wish& wish, const std::optional<Moment>& moment);
    [[nodiscard]] bool HasEnd() const;
    [[nodiscard]] bool IsOver(double time) const;
    [[nodiscard]] bool IsAtEnd(double time) const { return time == end_.time || IsOver(time); }
    [[nodiscard]] std::string DistanceLine(double unit, const BodyLabels& labels) const;
    [[nodiscard]] BodyPlaces ShownPlaces(double time, const BodyLabels& labels) const;
    [[nodiscard]] std::optional<ThreeVector> PlaceOf(int64 body, double time) const;
    [[nodiscard]] FrameMoment FrameAt(double time, const BodyLabels& labels) const;
    [[nodiscard]] std::string DistanceText(double distance, double unit) const;

    TrajectoryDisplay* const display_;
    const DisplayContext& context_;
    const RunHistory* history_ = nullptr;
    const AbEpoch* other_ = nullptr;
    std::weak_ptr<const void> life_;  // of it
    std::string name_;
    TimeLine line_;    // of the other epoch
    SystemState end_;  // likewise
    std::unordered_map<int64, Look> looks_;

    mutable std::mutex mutex_;  // guards what follows
    BodyPlaces measured_;       // what the finder was asked about last
    bool isMeasuring_ = false;
    std::optional<Found> found_;
    int64 asked_ = 0;
    std::string told_;                      // the line of the distance
    std::unique_ptr<MomentFinder> finder_;  // last: it uses the above
};
