// Small documents for the tests, and a way to run them.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/Observer.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/SimulationDocument.h"

inline constexpr double kSunGM = 1.32712440018e20;  // m3/s2

std::unique_ptr<Body> MakeBody(const char* name, int64 id, double gm, ThreeVector position,
                               ThreeVector velocity);
// A star, a planet, a moon of the planet and a massless probe, off the origin and moving; radii are
// 0.
std::unique_ptr<Epoch> MakePlanetEpoch(const char* name);

// A record with these epochs' deep archives and nothing else.
BMessage RecordOf(const std::vector<const AbEpoch*>& topLevel);
// A record with the planet epoch, "Genesis".
BMessage PlanetRecord();

// The bytes of a file with the record, as they are without any check: also what no program would
// write.
std::string FileOf(const BMessage& record);

// The names of all epochs in visiting order, top-level ones and their descendants in brackets:
// "A(B(D) C) E".
std::string Outline(AbEpoch* root);

// The state of the focus epoch's bodies, to the bit.
struct Bits {
    double time;
    std::vector<double> coordinates;
    bool operator==(const Bits&) const = default;
};
Bits BitsOf(SimulationDocument* document);

// Runs a document for an exact number of steps: Go, wait, Pause.
class StepRunner : public Observer {
public:
    explicit StepRunner(SimulationDocument* document);
    ~StepRunner() override;
    void Run(RunControl* control, int64 steps);

    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

private:
    SimulationDocument* const document_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool parked_ = false;
};

// Puts epochs below the first top-level one, each below the one before, all of them records, until
// none may follow; the last one gets the focus.
void NestAsDeepAsPossible(EpochPortal* portal);
