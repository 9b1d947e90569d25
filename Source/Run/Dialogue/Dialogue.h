// Lets another program work with a document: reads orders from standard input, one JSON object a
// line, and answers each with one JSON object on standard output, until the input ends. Main
// thread; one at a time.
#pragma once

#include <atomic>
#include <optional>
#include <semaphore>
#include <string>
#include <string_view>

#include "Model/Sharing/Observer.h"
#include "Run/CollisionWatch.h"
#include "Run/Options.h"
#include "Run/RunRecorder.h"
#include "Run/RunnerOutput.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/RunControlView.h"
#include "Simulation/Document/RunTarget.h"
#include "Simulation/Document/SimulationController.h"
#include "Simulation/Document/SimulationDocument.h"

class ProgramResources;

class Dialogue : private RunControlView, private Observer {
public:
    // Neither is owned.
    Dialogue(const Options& options, const ProgramResources& resources);
    ~Dialogue() override;

    // What of the options is for a run of its own; empty if nothing is.
    [[nodiscard]] static std::string_view FindOther(const Options& options);
    // The exit status.
    int Run();

private:
    // What is wrong, if anything is.
    using Wrong = std::optional<std::string>;
    struct Order;
    static const Order kOrders[];

    Wrong Load();
    [[nodiscard]] std::string Answer(std::string_view line);
    Wrong Import(const std::string& path);
    Wrong Edit(const std::string& edit);
    Wrong Save(const std::string& path);
    Wrong RunFor(const std::string& duration);
    Wrong RunSteps(const std::string& steps);
    Wrong RunUntil(const std::string& goal);
    Wrong State(const std::string& which);
    // As options_ and target_ say.
    Wrong Go();
    [[nodiscard]] Wrong BadValue(std::string_view order, std::string_view value) const;
    [[nodiscard]] bool ResolveCollision();
    [[nodiscard]] std::string StateAsJson();

    void RunStarting() override;
    // Observer, on any thread.
    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

    Options options_;  // what the next run is like
    const ProgramResources& resources_;
    const RunnerOutput output_;
    std::counting_semaphore<> parked_{0};
    CollisionWatch collisions_;
    SimulationDocument document_;
    RunControl control_;
    SimulationController controller_;
    RunRecorder recorder_;
    RunTarget target_{.kind = RunTarget::Kind::kNone};
    bool stopsAtCollision_ = false;
    std::atomic<bool> wasTooDeep_ = false;
    std::optional<RunEnding> ending_;
    bool hasEndedAtCollision_ = false;
    int64 mergers_ = 0;
};
