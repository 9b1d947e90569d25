#include "Simulation/RunMonitor.h"

#include <algorithm>
#include <utility>

#include "Platform/Kernel/OS.h"

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
    isAwaited_ = false;
    meter_.Forget();
    lastSteps_ = meter_.Steps();
    lastTime_ = state.time;
    lastMoment_ = system_time();
    nextEnergy_ = lastMoment_ + kSecond;
}

// What was kept of the run shows the bodies apart.
void RunMonitor::Add(const MergeResult& merged) {
    mergers_.Add(merged);
    if (isAwaited_) meter_.Want();
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

// The state is asked for when it is time for a figure, and measured at a later moment: one that was
// asked for long ago would be of long ago.
void RunMonitor::MeasureEnergy(int64 now) {
    SystemState state;
    if (!std::exchange(isAwaited_, true)) return meter_.Want();
    if (!meter_.Take(&state)) return;
    isAwaited_ = false;
    const int64 before = system_time();
    energyError_ = MeasureDrift(start_, MeasureConserved(state), mergers_).energy;
    nextEnergy_ = now + std::max(kSecond, kEnergyShare * (system_time() - before));
}

RunMonitor::Figures RunMonitor::End() {
    Figures figures;
    if (isMeasured_)
        figures.energyError =
            MeasureDrift(start_, MeasureConserved(TakeState(portal_)), mergers_).energy;
    isMeasured_ = false;
    return figures;
}
