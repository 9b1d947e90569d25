#include "Simulation/History/SideRun.h"

#include <chrono>

#include "Calculation/Calculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/Document/CenterOfMass.h"

namespace {

constexpr std::chrono::milliseconds kProgressInterval(100);

}  // namespace

SideRun::SideRun(std::unique_ptr<Epoch> epoch)
    : epoch_(std::move(epoch)),
      portal_(&undoChain_, epoch_.get()),
      calculator_(MakeCalculator(&portal_, &consumers_, nullptr)) {
    portal_.SetEpochTo(epoch_.get());
    portal_.AddObserver(this);
}

SideRun::~SideRun() {
    portal_.RemoveObserver(this);
    portal_.SetEpochTo(nullptr);
}

void SideRun::Prepare(bool isBackwards) {
    {
        const WriteGuard guard(&portal_);
        if (BMessage* const state = epoch_->CalculatorState(); state != nullptr)
            calculator_->Regenerate(state);
    }
    calculator_->SetBackwards(isBackwards);
    if (epoch_->COMOnGo()) PutCenterOfMassAtOrigin(&portal_);
}

bool SideRun::Run(bool isHeld, const std::function<bool()>& goesOn) {
    hasParked_ = false;  // nobody else looks at it now
    calculator_->UnPause(isHeld);
    bool isWanted = true;
    std::unique_lock lock(mutex_);
    while (isWanted && !parking_.wait_for(lock, kProgressInterval, [this] { return hasParked_; })) {
        lock.unlock();
        isWanted = goesOn();
        lock.lock();
    }
    lock.unlock();
    calculator_->Pause();
    return isWanted;
}

double SideRun::Time() {
    const ReadGuard guard(&portal_);
    return epoch_->Time();
}

void SideRun::Changed(int32 what) {
    if (what != kCalculatorParked) return;
    const std::lock_guard lock(mutex_);
    hasParked_ = true;
    parking_.notify_all();
}
