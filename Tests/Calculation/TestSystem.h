// What tests and benchmarks of the calculator need around it: a model of one epoch with its portal,
// an observer that waits for the calculator to park, and consumers that record what they are given.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "Calculation/Calculator.h"
#include "Calculation/ReportConsumer.h"
#include "Model/Commands/UndoChain.h"
#include "Model/Sharing/Benaphore.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/Observer.h"
#include "Model/Systems/ThreeVector.h"
#include "Tests/Calculation/PairWalk.h"

class Epoch;

// Used by the thread that owns the calculator, which is made after it and destroyed before it.
class TestSystem : public Observer {
public:
    explicit TestSystem(int32 order = 4, double cutoff = 1e-11);
    // The bodies of the walk, with identifiers 0, 1, 2, ... in its order.
    explicit TestSystem(const PairWalk& walk, int32 order = 4, double cutoff = 1e-11);
    ~TestSystem() override;

    Body* Add(int64 id, double gm, ThreeVector position, ThreeVector velocity, double radius = 0.0);
    Body* Find(int64 id) const;
    EpochPortal* Portal() { return &portal_; }
    Epoch* GetEpoch() { return epoch_.get(); }
    const std::vector<ReportConsumer*>* Consumers() const { return &consumers; }

    // Lets a paused calculator run until it parks by itself, and pauses it. A held run goes on.
    void RunUntilParked(Calculator* calculator, bool isHeldRun = false);
    // The same for so many reports.
    void Run(Calculator* calculator, int64 reports, bool isHeldRun = false);

    void Changed(int32 what) override;
    bool CommitChanges() override { return false; }

    std::vector<ReportConsumer*> consumers;

private:
    std::unique_ptr<Epoch> epoch_;
    UndoChain undoChain_;
    EpochPortal portal_;
    std::mutex mutex_;
    std::condition_variable parked_;
    int32 parks_ = 0;
};

// A display without a window: a thread that works on each batch for a while. Records all reports.
class RecordingConsumer : public ReportConsumer {
public:
    // Enters itself into the list of consumers, and leaves it: while the calculator is parked.
    RecordingConsumer(TestSystem* system, const Calculator& calculator, bigtime_t drawTime = 0);
    ~RecordingConsumer() override;

    bool LockConsumer() override;
    void UnlockConsumer() override;
    void PrepareForGo(int32 reportsPerDraw) override;
    void ReadData(int32 count, double* times, double* positions, double* velocities) override;
    void ReadOk() override;

    // While the calculator is parked.
    const std::vector<double>& Times() const { return times_; }
    const std::vector<double>& Positions() const { return positions_; }
    const std::vector<double>& Velocities() const { return velocities_; }
    const std::vector<int32>& Preparations() const { return preparations_; }
    int32 CountDrawn() const { return drawn_; }
    // An empty batch counts as one.
    int32 CountRead() const { return read_; }
    // False: as a display whose window has gone.
    void SetLockable(bool lockable) { lockable_ = lockable; }

    // From any thread: waits for the next batch that is drawn.
    void WaitForDrawing();

private:
    void Draw();

    TestSystem* const system_;
    const Calculator& calculator_;
    const bigtime_t drawTime_;
    std::vector<double> times_, positions_, velocities_;
    std::vector<int32> preparations_;
    int32 read_ = 0;
    bool lockable_ = true;
    bool locked_ = false;
    std::atomic<bool> quit_{false};
    std::atomic<int32> drawn_{0};
    Benaphore* const readOk_;
    std::thread thread_;  // last: it uses all of the above
};
