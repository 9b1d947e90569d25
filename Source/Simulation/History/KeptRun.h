// What is kept of one run: samples of each body's path, checkpoints of the calculation, and what
// happened on the way. Owned by a RunHistory, whose mutex guards it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"
#include "Simulation/Document/CollisionMerger.h"
#include "Simulation/History/CheckpointList.h"
#include "Simulation/History/SampleChooser.h"
#include "Simulation/History/SampleTrack.h"

// What happened to the bodies of a run beside their motion. A plain value.
struct RunEvent {
    enum class Kind {
        kMerger,  // one body became part of another
        kEdit,    // somebody changed, added or removed bodies
    };
    // A body as it was.
    struct Before {
        int64 id = 0;
        std::string name;
        double gm = 0.0;       // m3/s2
        double radius = 0.0;   // m
        ThreeVector position;  // m
        ThreeVector velocity;  // m/s
    };

    Kind kind = Kind::kEdit;
    double time = 0.0;  // s
    // The bodies that it happened to; of a merger the survivor and the one that it absorbed.
    std::vector<Before> before;
    std::string name;  // of a merger: what it has made
};

class KeptRun {
public:
    // A run begins there.
    explicit KeptRun(RunCheckpoint start);
    // All that is kept, and nothing that only serves the keeping.
    [[nodiscard]] std::unique_ptr<KeptRun> Copy() const;
    KeptRun& operator=(const KeptRun&) = delete;

    // --- Keeping: calculation thread ---

    // After a halt: as if there had been none, or with other bodies. The checkpoint is where the
    // calculator goes on.
    void GoOn(RunCheckpoint from);
    void Add(int32 count, const double* times, const double* positions, const double* velocities);
    void Keep(RunCheckpoint checkpoint);
    [[nodiscard]] int64 ReportsToCheckpoint() const { return checkpoints_.ReportsToNext(reports_); }
    [[nodiscard]] bool IsCheckpointDue() const { return checkpoints_.IsDue(reports_); }

    // Another run begins: what only serves the keeping goes.
    void Leave() { watched_ = {}; }

    // --- While the calculator is at rest ---

    // `names`: of what the mergers have made, one for each.
    void NoteMergers(const std::vector<Merger>& mergers, const std::vector<std::string>& names);

    // --- Making room: needs no memory ---

    // The oldest half of the run loses every second sample; or the whole run does where that is
    // not enough, and in the end all of them.
    void ThinSamples();
    bool ThinCheckpoints() { return checkpoints_.Thin(); }
    void ThinCheckpointsTo(std::size_t most) { checkpoints_.ThinTo(most); }
    [[nodiscard]] std::size_t SampleBytes() const { return samples_ * sizeof(Sample); }
    [[nodiscard]] std::size_t CheckpointBytes() const { return checkpoints_.Bytes(); }
    // Samples were lost since there was no memory for them.
    [[nodiscard]] bool WasShortOfMemory() const { return wasShort_; }

    // --- Asking ---

    [[nodiscard]] int64 Reports() const { return reports_; }
    [[nodiscard]] double StartTime() const { return startTime_; }  // s
    [[nodiscard]] double EndTime() const { return tail_.time; }    // s
    // The last report.
    [[nodiscard]] const SystemState& End() const { return tail_; }
    // Of all that were in it at any time.
    [[nodiscard]] std::vector<int64> Bodies() const;
    [[nodiscard]] std::vector<Sample> Samples(int64 body, double from, double to,
                                              std::size_t most = SIZE_MAX) const;
    [[nodiscard]] const std::vector<RunEvent>& Events() const { return events_; }
    [[nodiscard]] std::shared_ptr<const RunCheckpoint> CheckpointBefore(double time) const {
        return checkpoints_.Before(time);
    }
    [[nodiscard]] std::size_t CountCheckpoints() const { return checkpoints_.Count(); }
    [[nodiscard]] const std::vector<std::shared_ptr<const RunCheckpoint>>& Checkpoints() const {
        return checkpoints_.All();
    }
    // Time falls in it.
    [[nodiscard]] bool IsBackwards() const { return isBackwards_; }
    // The run comes to the one time before the other, or at the same moment.
    [[nodiscard]] bool IsBefore(double time, double other) const {
        return isBackwards_ ? time >= other : time <= other;
    }
    // There is no report between that time and the last one.
    [[nodiscard]] bool IsLastAfter(double time) const { return !IsBefore(time, timeBeforeLast_); }

private:
    friend class KeptRunRecord;

    struct Watched {
        SampleTrack* track;
        SampleChooser chooser;
    };

    KeptRun(const KeptRun& other);
    // As it ended; without samples and events.
    void Restore(const SystemState& end, std::vector<double> radii, double timeBeforeLast,
                 int64 reports);
    void SetTrack(int64 body, SampleTrack track);
    void TakeEnd(const SystemState& end, std::vector<double> radii);

    void Watch(const RunCheckpoint& from);
    void Look(double time, const double* positions, const double* velocities);
    void AddSample(SampleTrack* track, const Sample& sample);
    std::size_t ThinUntil(double time);
    void NoteEdit(const RunCheckpoint& now);
    [[nodiscard]] bool IsMerged(int64 id, bool orAbsorbed) const;
    [[nodiscard]] bool IsResultOfMergers(const RunCheckpoint& now) const;
    [[nodiscard]] bool IsAsBefore(const RunCheckpoint& now, std::size_t body) const;
    [[nodiscard]] bool IsWhereItWas(const Sample& now, std::size_t former) const;
    [[nodiscard]] std::optional<std::size_t> PlaceOf(int64 id) const;
    [[nodiscard]] Sample TailOf(std::size_t body) const;
    [[nodiscard]] RunEvent::Before BodyAtEnd(std::size_t body) const;

    bool isBackwards_;
    int64 reportsPerLook_;
    int64 reports_ = 0;
    double startTime_;                               // s
    double timeBeforeLast_;                          // s
    SystemState tail_;                               // the last report, or the start
    std::vector<double> radii_;                      // m, in its order
    std::unordered_map<int64, std::size_t> places_;  // in it, by identifier
    std::unordered_map<int64, SampleTrack> tracks_;
    std::vector<Watched> watched_;  // in the order of the reports
    std::size_t samples_ = 0;
    bool wasShort_ = false;
    CheckpointList checkpoints_;
    std::vector<RunEvent> events_;
    std::vector<Merger> newMergers_;  // since the last halt
};
