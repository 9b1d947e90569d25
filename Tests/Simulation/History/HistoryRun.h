// A document with a history, and a recorder beside it that has all reports.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunControlView.h"
#include "Simulation/History/RunHistory.h"
#include "Tests/Simulation/Document/SampleDocument.h"

// Everything that a run has reported.
class ReportRecorder : public ReportConsumer {
public:
    struct Report {
        double time;
        std::vector<int64> ids;
        std::vector<double> positions, velocities;
    };

    explicit ReportRecorder(SimulationDocument* document);
    ~ReportRecorder() override;

    void PrepareForGo(int32 reportsPerDraw) override;
    void ReadData(int32 count, double* times, double* positions, double* velocities) override;
    void ReadOk() override;

    // While the calculator is parked.
    std::vector<Report> reports;

private:
    SimulationDocument* const document_;
    std::vector<int64> ids_;
};

class HistoryRun {
public:
    struct Settings {
        int32 order = 4;
        int32 onContact = kContactMerges;
        double cutoff = 1e-11;
        HistoryLimits limits;
    };

    // Of unit masses, lengths and times: about a body of GM 1.
    struct Planet {
        double gm, x, y, vx, vy, radius;
    };
    explicit HistoryRun(const std::vector<Planet>& bodies);
    HistoryRun(const std::vector<Planet>& bodies, const Settings& settings);
    // The document is opened again.
    explicit HistoryRun(const BMessage& record);
    HistoryRun(const BMessage& record, const Settings& settings);
    ~HistoryRun();

    // Go, so many reports, through mergers, and Pause; held after each `hold` reports, if given.
    void Run(int64 reports, int64 hold = 0);
    AbEpoch* Focus() { return document.Portal()->FocusEpoch(); }
    RunHistory::Finding StateAt(double time, SystemState* state) {
        RunCheckpoint moment;
        const RunHistory::Finding finding = history.MomentAt(Focus(), time, {}, &moment);
        if (finding == RunHistory::Finding::kFound) *state = moment.state;
        return finding;
    }

    // Of these reports, by their places in the list: how many StateAt does not bring back to the
    // bit.
    int32 CountWrong(const std::vector<ReportRecorder::Report>& reports,
                     const std::vector<std::size_t>& asked);

    // What a save would write.
    BMessage Record();

private:
    class Mail;

    static BMessage RecordOfBodies(const std::vector<Planet>& bodies, const Settings& settings);
    bool Merge();

    Mail* const mail_;

public:
    SimulationDocument document;
    RunControlView view;
    RunControl control{document.Portal(), document.GetCalculator(), &view};
    ReportRecorder recorder{&document};
    RunHistory history;
    int32 mergers = 0;
};

[[nodiscard]] bool IsAt(const SystemState& state, const ReportRecorder::Report& report);

// A star with a planet that circles it 3 times in 100,000 steps, and two pairs far out, each of
// which meets on the way.
[[nodiscard]] std::vector<HistoryRun::Planet> TwoCollisions();
