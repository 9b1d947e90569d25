// Has a display's picture show the trails of the kept runs where it has lost them: all of them when
// it was cleared, and those of what is uncovered. Erased trails do not come back. Owned by the
// display and used with its lock.
#pragma once

#include <optional>
#include <vector>

#include "Displays/Trajectories/Extent.h"
#include "Displays/Trajectories/TrailSource.h"

class RunComparison;
class RunHistory;
class TrajectoryDisplay;
struct BodyLabels;

class KeptTrailsPainter {
public:
    // What the display sends itself where painting takes longer than a moment: it goes on when
    // other messages have had their turn.
    static constexpr uint32 kGoOn = FourCC("pttr");

    explicit KeptTrailsPainter(TrajectoryDisplay* display) : display_(display) {}

    // Null: there are none. Not owned.
    void SetHistory(const RunHistory* history) { history_ = history; }
    [[nodiscard]] const RunHistory* History() const { return history_; }
    // Which the trails end in; null: the one in focus.
    void SetRun(const AbEpoch* run) {
        if (run != run_) ModelChanged();
        run_ = run;
    }
    void SetLength(const TrailLength& length) { length_ = length; }
    // Whose trails are shown as well, faintly. Not owned.
    void SetComparison(const RunComparison* comparison) { comparison_ = comparison; }
    // The epoch in focus, its bodies or what they look like may be others, as far as the caller
    // knows: the next painting looks.
    void ModelChanged() {
        parts_.reset();
        faintRun_ = nullptr;
    }

    // `now`, in seconds, is where the trails end; the labels tell the bodies that are followed.
    void PaintAll(double now, const BodyLabels& labels);
    void PaintUncovered(double now, const BodyLabels& labels);
    void GoOn();
    // Trails of a limited length get shorter at their ends, and those of another run longer: now
    // and then the picture has to be painted anew.
    [[nodiscard]] bool ChangeAtEnds() const;
    [[nodiscard]] bool IsDue() const;
    // As they are to be seen.
    [[nodiscard]] std::vector<KeptTrails::Trail> Take(double now, const BodyLabels& labels);
    // Of all that were there when all were painted last, in the frame.
    [[nodiscard]] const Extent& TrailExtent() const { return extent_; }
    // Those of the focus epoch and of what led to it, up to now.
    void Erase(double now);

private:
    void AddFaint(TrailSource source, std::vector<KeptTrails::Trail>* trails);
    void PaintWithin(std::vector<BRect> frames, double now, const BodyLabels& labels);
    void Paint();

    TrajectoryDisplay* const display_;
    const RunHistory* history_ = nullptr;
    const AbEpoch* run_ = nullptr;  // only compared
    TrailLength length_;
    const RunComparison* comparison_ = nullptr;
    KeptTrails trails_;
    std::optional<std::vector<TrailSource::Part>> parts_;
    const AbEpoch* faintRun_ = nullptr;  // whose parts are the next; only compared
    std::vector<TrailSource::Part> faintParts_;
    bigtime_t due_ = 0;  // us
    Extent extent_;
    BRect painted_;  // what the picture covered when trails were painted last
    const AbEpoch* erasedIn_ = nullptr;
    double erasedUntil_ = 0.0;  // s
};
