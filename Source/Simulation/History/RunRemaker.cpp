#include "Simulation/History/RunRemaker.h"

#include <memory>
#include <new>
#include <utility>

#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Simulation/History/KeptRun.h"
#include "Simulation/History/RunRemake.h"

using Finding = RunHistory::Finding;

namespace {

constexpr double kNoProgress = -1.0;

}  // namespace

RunRemaker::RunRemaker(EpochPortal* portal, RunHistory* history, std::string joiner, Made made,
                       Waits waits)
    : portal_(portal),
      history_(history),
      joiner_(std::move(joiner)),
      made_(std::move(made)),
      waits_(std::move(waits)),
      thread_([this] { Work(); }) {}

RunRemaker::~RunRemaker() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        wanted_ = nullptr;
    }
    changed_.notify_all();
    thread_.join();
}

void RunRemaker::Want(const AbEpoch* run) {
    {
        const std::lock_guard lock(mutex_);
        wanted_ = run;
    }
    changed_.notify_all();
}

void RunRemaker::WantNothing() {
    const std::lock_guard lock(mutex_);
    wanted_ = nullptr;
}

std::optional<double> RunRemaker::Progress() const {
    const double progress = progress_;
    return progress >= 0.0 ? std::optional(progress) : std::nullopt;
}

bool RunRemaker::IsWanted(const AbEpoch* run) const {
    const std::lock_guard lock(mutex_);
    return wanted_ == run;
}

void RunRemaker::Work() {
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        changed_.wait(lock, [this] { return isEnding_ || wanted_ != nullptr; });
        if (isEnding_) return;
        const AbEpoch* const run = wanted_;
        lock.unlock();
        progress_ = 0.0;
        Finding finding = Finding::kLost;
        try {
            finding = Make(run);
        } catch (const std::bad_alloc&) {
            // As if it did not arrive.
        }
        progress_ = kNoProgress;
        lock.lock();
        if (wanted_ == run) wanted_ = nullptr;
        if (isEnding_) return;
        lock.unlock();
        made_(run, finding);
        lock.lock();
    }
}

Finding RunRemaker::Make(const AbEpoch* run) {
    std::unique_ptr<RunRemake> remake;
    std::weak_ptr<const void> life;
    {
        const ReadGuard guard(portal_);
        if (!portal_->HasEpoch(run) || !RunRemake::IsPossible(*run)) return Finding::kNotKept;
        if (const auto* const epoch = dynamic_cast<const Epoch*>(run); epoch != nullptr)
            life = epoch->Life();
        remake = std::make_unique<RunRemake>(*run, history_->Limits(), joiner_);
    }
    const Finding finding = remake->Make([&](double part) {
        progress_ = part;
        waits_();
        return IsWanted(run);
    });
    if (finding != Finding::kFound) return finding;
    return history_->Adopt(run, life, remake->TakeRun()) ? finding : Finding::kNotKept;
}
