#include "Simulation/Trust/ExactRerun.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Calculation/Calculator.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"

using Finding = RunHistory::Finding;

namespace {

constexpr int32 kExactOrder = 16;
constexpr double kLeastCutoff = 1e-16;
constexpr double kFiner = 1e-2;
constexpr int32 kMoments = 512;

// Of an epoch that has a parent.
std::unique_ptr<Epoch> StartOf(const AbEpoch& epoch, const ExactRerun::Method& method) {
    std::unique_ptr<AbEpoch> copy(epoch.Parent()->Copy());
    if (dynamic_cast<Epoch*>(copy.get()) == nullptr) copy = std::make_unique<Epoch>();
    copy->SetOrder(method.order);
    copy->SetCutoff(method.cutoff);
    copy->SetOnContact(epoch.OnContact());
    return std::unique_ptr<Epoch>(static_cast<Epoch*>(copy.release()));
}

}  // namespace

std::optional<ExactRerun::Method> ExactRerun::MethodFor(int32 order, double cutoff) {
    if (order <= kMaxLowOrder) return Method{kExactOrder, kLeastCutoff};
    if (cutoff > kLeastCutoff) return Method{order, std::max(kFiner * cutoff, kLeastCutoff)};
    const auto* const next = std::upper_bound(std::begin(kOrders), std::end(kOrders), order);
    if (next == std::end(kOrders)) return std::nullopt;
    return Method{*next, kLeastCutoff};
}

ExactRerun::ExactRerun(const AbEpoch& epoch, const Method& method, HistoryLimits limits,
                       const std::string& joiner)
    : start_(epoch.Parent()->Time()),
      end_(epoch.Time()),
      first_(StartOf(epoch, {epoch.Order(), epoch.Cutoff()}), joiner),
      exact_(StartOf(epoch, method), joiner),
      kept_(exact_.run.Portal(), exact_.run.GetCalculator(), limits) {
    exact_.run.AddConsumer(&kept_);
    exact_.kept = &kept_;
}

Finding ExactRerun::Make(const RunHistory::Progress& progress) {
    first_.run.Prepare(end_ < start_);
    exact_.run.Prepare(end_ < start_);
    for (int32 i = 1; i <= kMoments; i++) {
        const double part = static_cast<double>(i) / kMoments;
        const double time = i == kMoments ? end_ : start_ + (end_ - start_) * part;
        const auto goesOn = [&] { return progress(part); };
        Finding finding = RunTo(&first_, time, goesOn);
        if (finding == Finding::kFound) finding = RunTo(&exact_, first_.run.Time(), goesOn);
        if (finding == Finding::kFound && !goesOn()) finding = Finding::kCancelled;
        if (finding != Finding::kFound) return finding;
        Compare();
    }
    return first_.run.Time() == end_ ? Finding::kFound : Finding::kLost;
}

Finding ExactRerun::RunTo(Story* story, double time, const std::function<bool()>& goesOn) const {
    SideRun& run = story->run;
    const auto isThere = [&] { return end_ < start_ ? run.Time() <= time : run.Time() >= time; };
    run.GetCalculator()->SetRunLimit(0, time);
    while (!isThere()) {
        story->merger.Forget();
        if (!run.Run(std::exchange(story->hasBegun, true), goesOn)) return Finding::kCancelled;
        if (isThere()) break;
        const MergeResult merged = story->merger.Merge();
        if (story->kept != nullptr) story->kept->NoteMergers(merged);
        if (merged.mergers.empty() || merged.unmerged) return Finding::kLost;
    }
    return Finding::kFound;
}

void ExactRerun::Compare() {
    std::vector<double> radii;
    {
        const ReadGuard guard(first_.run.Portal());
        for (const Body* const body : first_.run.Portal()->BodiesInMassOrder())
            radii.push_back(body->Radius());
    }
    difference_.Add(TakeState(first_.run.Portal()), radii, TakeState(exact_.run.Portal()));
}

std::unique_ptr<Epoch> ExactRerun::MakeEpoch() {
    SideRun& run = exact_.run;
    const ReadGuard guard(run.Portal());
    auto epoch = std::make_unique<Epoch>(*run.GetEpoch());
    auto state = std::make_unique<BMessage>(B_ARCHIVED_OBJECT);
    if (run.GetCalculator()->Archive(state.get(), true) == B_OK)
        epoch->SetCalculatorState(state.release());
    epoch->SetWriteable(false);
    return epoch;
}
