// Makes the lines of a chart from what is kept of runs: a part at a time, so that a window stays
// alive meanwhile, and of a run that goes on only what is new. Used by one thread; takes no lock of
// the model.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "Displays/Chart/ChartQuantity.h"
#include "Displays/Chart/ChartRuns.h"
#include "Displays/Chart/ChartSeries.h"
#include "Simulation/Document/Conservation.h"

class RunHistory;

// Only the moments at which a body passes a plane through the one that it is relative to, upwards.
enum class Crossing : int32 { kNone, kX, kY, kZ };

// What a line shows. A plain value.
struct ChartLine {
    Quantity quantity = Quantity::kDistance;
    int64 body = -1;
    int64 about = -1;                 // what it is relative to
    std::optional<Quantity> against;  // none: time
    Crossing crossing = Crossing::kNone;

    bool operator==(const ChartLine&) const = default;
};

// The path of a body relative to another one after a time: at its samples, where the other is
// known, too. The first one is joined to what was known until then, if anything was.
[[nodiscard]] std::vector<Sample> RelativePath(const std::vector<Sample>& body,
                                               const std::vector<Sample>& about, double after);

class ChartReader {
public:
    // Not owned; null: there are no runs.
    void SetHistory(const RunHistory* history) { history_ = history; }
    // Lines that go on as they were keep what they have.
    void Start(const std::vector<ChartLine>& lines, std::vector<ChartRun> runs);
    // What is kept of the runs has changed: all lines are made again.
    void Forget() { runs_.clear(); }
    // Goes on for about so long. True: the lines are complete.
    bool Work(bigtime_t most);

    [[nodiscard]] const std::vector<ChartLine>& Lines() const { return lines_; }
    // As far as they are made, in the order of the lines.
    [[nodiscard]] const std::vector<ChartSeries>& Series() const { return series_; }

private:
    // Where the making of a line stands.
    struct Progress {
        std::size_t run = 0;
        const AbEpoch* epoch = nullptr;  // of the run that the next ones are of
        std::optional<Sample> last;
        double reached = 0.0;  // s
        std::optional<Conserved> start;
        std::size_t bodies = 0;
    };
    // What there is to make of one line from one run.
    struct Material {
        std::vector<Sample> path;
        std::vector<ChartRun::MassStep> masses;
        std::vector<std::shared_ptr<const RunCheckpoint>> states;
        std::size_t next = 0;
        std::size_t mass = 0;
    };

    [[nodiscard]] bool IsContinued(const std::vector<ChartLine>& lines,
                                   const std::vector<ChartRun>& runs) const;
    // A small part of a line. False: there is nothing left to do.
    bool WorkOn(std::size_t line);
    [[nodiscard]] Material Fetch(const ChartLine& line, const Progress& progress) const;
    static void Add(const ChartLine& line, Material* from, Progress* progress, ChartSeries* into);
    static void AddState(const ChartLine& line, const RunCheckpoint& state, Progress* progress,
                         ChartSeries* into);

    const RunHistory* history_ = nullptr;
    std::vector<ChartLine> lines_;
    std::vector<ChartRun> runs_;
    std::vector<ChartSeries> series_;
    std::vector<Progress> progress_;
    std::optional<Material> material_;  // of the first line that is not complete
};
