#include "Simulation/RunMeter.h"

#include <cmath>
#include <limits>
#include <new>

#include "Calculation/Calculator.h"
#include "Model/Sharing/Benaphore.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"

namespace {

constexpr int64 kFirstReports = 400;
constexpr double kNoStep = std::numeric_limits<double>::infinity();

}  // namespace

RunMeter::RunMeter(EpochPortal* portal, Calculator* calculator)
    : portal_(portal), calculator_(calculator), shortestStep_(kNoStep) {
    release_ben(calculator_->WriteOk());
}

void RunMeter::Want() {
    const std::lock_guard lock(mutex_);
    hasState_ = false;
    isWanted_ = true;
}

void RunMeter::Forget() {
    const std::lock_guard lock(mutex_);
    hasState_ = isWanted_ = false;
    shortestStep_ = kNoStep;
}

void RunMeter::PrepareForGo(int32 /*reportsPerDraw*/) {
    const auto bodies = static_cast<std::size_t>(calculator_->CountBodies());
    reportsSinceGo_ = 0;
    gm_.clear();
    gm_.reserve(bodies);
    const ReadGuard guard(portal_);
    for (int32 i = 0; i < calculator_->CountBodies(); i++)
        gm_.push_back(calculator_->BodyAt(i)->M());
}

void RunMeter::ReadData(int32 count, double* times, double* positions, double* velocities) {
    if (count <= 0) return;
    steps_ = calculator_->StepsTaken();
    time_ = times[count - 1];
    FindShortestStep(count, times);
    if (!isWanted_.exchange(false)) return;
    const std::size_t stride = 3 * gm_.size();
    const std::size_t last = static_cast<std::size_t>(count - 1) * stride;
    const std::lock_guard lock(mutex_);
    state_.time = times[count - 1];
    try {
        state_.gm = gm_;
        state_.positions.assign(positions + last, positions + last + stride);
        state_.velocities.assign(velocities + last, velocities + last + stride);
    } catch (const std::bad_alloc&) {
        isWanted_ = true;  // a later batch will do as well
        return;
    }
    hasState_ = true;
}

void RunMeter::FindShortestStep(int32 count, const double* times) {
    double shortest = shortestStep_;
    for (int32 i = 0; i < count; i++) {
        const double step = std::fabs(times[i] - lastTime_);
        lastTime_ = times[i];
        // Where bodies touch there is a report without a step.
        if (++reportsSinceGo_ > kFirstReports && step > 0.0 && step < shortest) shortest = step;
    }
    shortestStep_ = shortest;
}

void RunMeter::ReadOk() {
    release_ben(calculator_->WriteOk());
}

bool RunMeter::Take(SystemState* state) {
    const std::lock_guard lock(mutex_);
    if (!hasState_) return false;
    hasState_ = false;
    std::swap(*state, state_);
    return true;
}
