// Runs again, beside the document, what has led to an epoch: as it was, and more exactly, and
// compares the two stories at many moments. Used by one thread, which waits while others calculate.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Simulation/History/KeptRun.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/SideMerger.h"
#include "Simulation/History/SideRun.h"
#include "Simulation/Trust/StoryDifference.h"

class ExactRerun {
public:
    // What is asked of an epoch.
    struct Method {
        int32 order;
        double cutoff;
    };
    // Orders up to 4 become 16; else the cutoff is a hundredth, and where that is at its least the
    // next higher order is taken. None: there is nothing more exact.
    [[nodiscard]] static std::optional<Method> MethodFor(int32 order, double cutoff);

    // RunRemake::IsPossible is true of the epoch; the caller holds the document's read lock.
    // `joiner` stands between the names of bodies that merge.
    ExactRerun(const AbEpoch& epoch, const Method& method, HistoryLimits limits,
               const std::string& joiner);
    ExactRerun(const ExactRerun&) = delete;
    ExactRerun& operator=(const ExactRerun&) = delete;

    // Once. kLost: the run does not come to the epoch's time.
    [[nodiscard]] RunHistory::Finding Make(const RunHistory::Progress& progress);
    // What came of it.
    [[nodiscard]] const StoryDifference& Difference() const { return difference_; }
    // A record in no tree, with all that its run can go on from.
    [[nodiscard]] std::unique_ptr<Epoch> MakeEpoch();
    [[nodiscard]] std::unique_ptr<KeptRun> TakeRun() { return kept_.Take(exact_.run.GetEpoch()); }

private:
    // One of the two runs.
    struct Story {
        Story(std::unique_ptr<Epoch> start, const std::string& joiner)
            : run(std::move(start)), merger(&run, joiner) {}

        SideRun run;
        SideMerger merger;
        RunHistory* kept = nullptr;
        bool hasBegun = false;
    };

    // To the first report at or past the time; where the motion is known, to the time.
    [[nodiscard]] RunHistory::Finding RunTo(Story* story, double time,
                                            const std::function<bool()>& goesOn) const;
    void Compare();

    const double start_;  // s
    const double end_;    // s
    Story first_;
    Story exact_;
    RunHistory kept_;  // of the more exact one
    StoryDifference difference_;
};
