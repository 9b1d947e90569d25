#include "Tests/Calculation/TestSystem.h"

#include <cmath>

#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Systems/Body.h"

TestSystem::TestSystem(int32 order, double cutoff)
    : epoch_(std::make_unique<Epoch>()), portal_(&undoChain_, epoch_.get()) {
    epoch_->SetOrder(order);
    epoch_->SetCutoff(cutoff);
    portal_.SetEpochTo(epoch_.get());
    portal_.AddObserver(this);
}

TestSystem::TestSystem(const PairWalk& walk, int32 order, double cutoff)
    : TestSystem(order, cutoff) {
    int64 id = 0;
    for (const PairWalk::Body& body : walk.bodies) {
        const auto& r = body.position;
        const auto& v = body.velocity;
        Add(id++, body.gm, {r[0], r[1], r[2]}, {v[0], v[1], v[2]}, body.radius);
    }
}

TestSystem::~TestSystem() {
    portal_.RemoveObserver(this);
}

Body* TestSystem::Add(int64 id, double gm, ThreeVector position, ThreeVector velocity,
                      double radius) {
    auto* body = new Body("", id, {}, {}, -2);
    body->SetM(gm);
    body->SetPosition(position);
    body->SetVelocity(velocity);
    body->SetRadius(radius);
    epoch_->RootSystem()->AddChild(body);
    return body;
}

Body* TestSystem::Find(int64 id) const {
    return dynamic_cast<Body*>(epoch_->SystemFromID(id));
}

void TestSystem::RunUntilParked(Calculator* calculator, bool isHeldRun) {
    {
        std::unique_lock lock(mutex_);
        const int32 before = parks_;
        calculator->UnPause(isHeldRun);
        parked_.wait(lock, [&] { return parks_ != before; });
    }
    calculator->Pause();
}

void TestSystem::Run(Calculator* calculator, int64 reports, bool isHeldRun) {
    calculator->SetRunLimit(reports, INFINITY);
    RunUntilParked(calculator, isHeldRun);
}

void TestSystem::Changed(int32 what) {
    if (what != kCalculatorParked) return;
    const std::lock_guard lock(mutex_);
    parks_++;
    parked_.notify_all();
}

RecordingConsumer::RecordingConsumer(TestSystem* system, const Calculator& calculator,
                                     bigtime_t drawTime)
    : system_(system),
      calculator_(calculator),
      drawTime_(drawTime),
      readOk_(create_ben(0, "Read Ok")),
      thread_([this] { Draw(); }) {
    system_->consumers.push_back(this);
}

RecordingConsumer::~RecordingConsumer() {
    std::erase(system_->consumers, this);
    quit_ = true;
    ReadOk();
    acquire_ben(calculator_.WriteOk());
    thread_.join();
    delete_ben(readOk_);
}

bool RecordingConsumer::LockConsumer() {
    locked_ = lockable_;
    return lockable_;
}

void RecordingConsumer::UnlockConsumer() {
    locked_ = false;
}

// Each takes the model lock, which traps when the calculation thread still holds it.
void RecordingConsumer::PrepareForGo(int32 reportsPerDraw) {
    system_->Portal()->ReadLock();
    system_->Portal()->ReadUnlock();
    preparations_.push_back(locked_ ? reportsPerDraw : -1);
}

void RecordingConsumer::ReadData(int32 count, double* times, double* positions,
                                 double* velocities) {
    system_->Portal()->ReadLock();
    system_->Portal()->ReadUnlock();
    const int32 numbers = 3 * calculator_.CountBodies() * count;
    times_.insert(times_.end(), times, times + count);
    positions_.insert(positions_.end(), positions, positions + numbers);
    velocities_.insert(velocities_.end(), velocities, velocities + numbers);
    read_++;
}

void RecordingConsumer::ReadOk() {
    release_ben(readOk_);
}

void RecordingConsumer::WaitForDrawing() {
    const int32 before = drawn_;
    drawn_.wait(before);
}

void RecordingConsumer::Draw() {
    for (;;) {
        release_ben(calculator_.WriteOk());
        acquire_ben(readOk_);
        if (quit_) return;
        if (drawTime_ > 0) snooze(drawTime_);
        drawn_++;
        drawn_.notify_all();
    }
}
