// What the simulation's window does about trust: explains how far the run that led here can be
// believed, has it made again more exactly and looks for chaos in it, beside whatever else goes on.
// Owned by what owns the run, and used on the window's thread.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Simulation/Trust/BackgroundJob.h"
#include "Simulation/Trust/ChaosProbe.h"
#include "Simulation/Trust/ExactRerun.h"

class BMessage;
class DifferencesWindow;
class EpochPortal;
class ProgramResources;
class SimulationControls;

class TrustControl {
public:
    // None is owned.
    TrustControl(EpochPortal* portal, RunHistory* history, SimulationControls* controls,
                 const ProgramResources* resources);
    ~TrustControl();
    TrustControl(const TrustControl&) = delete;
    TrustControl& operator=(const TrustControl&) = delete;

    // False for a message about something else.
    bool Handle(const BMessage& message);

private:
    // What was asked for, and of which run.
    struct Question {
        AbEpoch* start = nullptr;      // only compared, unless the tree has it
        const AbEpoch* run = nullptr;  // likewise
        double timeUval = 1.0;
        ExactRerun::Method method{};
        std::unique_ptr<ExactRerun> rerun;  // one of the two
        std::unique_ptr<ChaosProbe> probe;
        RunHistory::Finding finding = RunHistory::Finding::kLost;
    };

    void Explain();
    void Ask(uint32 what);
    // Nothing: a text tells why not.
    [[nodiscard]] std::shared_ptr<Question> MakeQuestion(uint32 what, int32* whyNot) const;
    void Stop();
    void ShowState();
    void Answer(const Question& question);
    void TakeRun(const Question& question);
    [[nodiscard]] std::string Describe(const Question& question) const;
    [[nodiscard]] std::string TimeText(int32 label, double time, double uval) const;
    void ShowText(const std::string& text);

    EpochPortal* const portal_;
    RunHistory* const history_;
    SimulationControls* const controls_;
    const ProgramResources* const resources_;
    DifferencesWindow* window_ = nullptr;  // may have been closed
    std::shared_ptr<Question> question_;   // that is worked at; the job's thread has it meanwhile
    BackgroundJob job_;                    // last: it uses the above
};
