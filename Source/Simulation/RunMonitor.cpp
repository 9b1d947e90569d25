#include "RunMonitor.h"

#include <algorithm>

#include "OS.h"

namespace {

constexpr int64 kSecond = 1'000'000;
// A measurement may take one part in so many of the time.
constexpr int64 kEnergyShare = 200;

}  // namespace

void RunMonitor::Begin() {
    const SystemState state = TakeState(portal_);
    isMeasured_ = state.CountBodies() <= kMaxMeasuredBodies;
    if (isMeasured_) start_ = MeasureConserved(state);
    mergers_ = {};
    energyError_.reset();
    DropState();
    lastSteps_ = meter_.Steps();
    lastTime_ = state.time;
    lastMoment_ = system_time();
    nextEnergy_ = lastMoment_ + kSecond;
    if (isMeasured_) meter_.Want();
}

// What was kept of the run shows the bodies apart.
void RunMonitor::Add(const MergeResult& merged) {
    mergers_.Add(merged);
    DropState();
    if (isMeasured_) meter_.Want();
}

void RunMonitor::DropState() {
    SystemState stale;
    static_cast<void>(meter_.Take(&stale));
}

RunMonitor::Figures RunMonitor::Measure(int64 now) {
    Figures figures;
    const int64 steps = meter_.Steps();
    const double time = meter_.Time();
    const double seconds =
        static_cast<double>(std::max<int64>(now - lastMoment_, 1)) / static_cast<double>(kSecond);
    if (steps > lastSteps_) {
        figures.stepsPerSecond = static_cast<double>(steps - lastSteps_) / seconds;
        figures.timePerSecond = (time - lastTime_) / seconds;
        lastTime_ = time;
    }
    lastSteps_ = steps;
    lastMoment_ = now;
    if (isMeasured_ && now >= nextEnergy_) MeasureEnergy(now);
    figures.energyError = energyError_;
    return figures;
}

// The state of about a second ago.
void RunMonitor::MeasureEnergy(int64 now) {
    SystemState state;
    if (meter_.Take(&state)) {
        const int64 before = system_time();
        energyError_ = MeasureDrift(start_, MeasureConserved(state), mergers_).energy;
        nextEnergy_ = now + std::max(kSecond, kEnergyShare * (system_time() - before));
    }
    meter_.Want();
}

RunMonitor::Figures RunMonitor::End() {
    Figures figures;
    if (isMeasured_)
        figures.energyError =
            MeasureDrift(start_, MeasureConserved(TakeState(portal_)), mergers_).energy;
    isMeasured_ = false;
    return figures;
}
