#include "Simulation/RunMonitor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Calculation/Calculator.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
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
    evidence_.reset();
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
    figures.evidence = evidence_;
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
    Judge(state);
    nextEnergy_ = now + std::max(kSecond, kEnergyShare * (system_time() - before));
}

void RunMonitor::Judge(const SystemState& state) {
    Evidence evidence;
    evidence.drift = MeasureDrift(start_, MeasureConserved(state), mergers_);
    evidence.mergers = mergers_.count;
    {
        const ReadGuard guard(portal_);
        evidence.order = calculator_->OrderInUse();
        evidence.cutoff = calculator_->CutoffInUse();
    }
    const double step = meter_.ShortestStep();
    if (evidence.order <= kMaxLowOrder && std::isfinite(step)) evidence.shortestStep = step;
    evidence_ = evidence;
}

RunMonitor::Figures RunMonitor::End() {
    Figures figures;
    if (isMeasured_) {
        Judge(TakeState(portal_));
        figures.evidence = evidence_;
    }
    isMeasured_ = false;
    return figures;
}
