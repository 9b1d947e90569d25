#include "Calculation/TaylorCalculator.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "Calculation/RunState.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr int32 kLeastOrder = 2;
constexpr int32 kMostOrder = 4;
// A batch is handed over after this time, however few reports it holds, so that consumers stay up
// to date and the model is not locked for long. Results do not depend on how a run is cut into
// batches.
constexpr bigtime_t kLongestBatch = 100'000;  // us
// Steps of so many interactions take longer than it takes to look at the clock. Quicker ones look
// only once in so many, a power of two.
constexpr int64 kSlowInteractions = 10'000;
constexpr int32 kQuickSteps = 64;

constexpr const char* kIterationField = "Iter";
constexpr const char* kMaxOrderField = "MaxOrd";

}  // namespace

TaylorCalculator::TaylorCalculator(EpochPortal* portal,
                                   const std::vector<ReportConsumer*>* consumers, BLooper* target)
    : Calculator(portal, consumers, target) {}

status_t TaylorCalculator::Archive(BMessage* into, bool deep) const {
    if (const status_t status = Calculator::Archive(into, deep); status != B_OK) return status;
    if (const status_t status = parts_.Archive(into); status != B_OK) return status;
    if (const status_t status = into->AddInt32(kIterationField, iteration_); status != B_OK)
        return status;
    return into->AddInt32(kMaxOrderField, kMostOrder);
}

void TaylorCalculator::Regenerate(BMessage* archive) {
    iteration_ = 0;
    int32 iteration = 0;
    if (archive == nullptr || archive->FindInt32(kIterationField, &iteration) != B_OK) return;
    if (parts_.Regenerate(*archive) == B_OK) iteration_ = iteration;
}

void TaylorCalculator::Recache() {
    Calculator::Recache();
    // A display that is opened or closed in the middle of a run must not be seen in its results.
    // The parts add up to the bodies' places only until they are promoted, or not at all at the
    // lower orders; so they are left alone.
    const bool isSameRun = IsHeldRun() && IsUntouched();
    if (!isSameRun) parts_.ResortDels(Bodies());
    LoadBodies();
    ComputeKissDist();
    if (isSameRun) return;
    StartSteps();
    anchored_ = false;
}

// With the settings of the epoch, from the shortest step on.
void TaylorCalculator::StartSteps() {
    epoch_ = GetEpoch();
    order_ = std::clamp(epoch_->Order(), kLeastOrder, kMostOrder);
    runCutoff_ = Cutoff();
    step_.Restart(runCutoff_, order_);
}

status_t TaylorCalculator::ArchiveRun(BMessage* into) const {
    if (!anchored_ || !IsUntouched()) return B_NOT_ALLOWED;
    if (const status_t status = Archive(into, true); status != B_OK) return status;
    RunState run;
    run.inverseStep = step_.Inverse();
    run.anchor = anchor_;
    run.elapsed = elapsed_;
    run.reports = ReportsLeft();
    if (!std::isnan(TimeLimit())) run.until = TimeLimit();
    return run.Archive(into);
}

status_t TaylorCalculator::ResumeRun(const BMessage& archive) {
    RunState run;
    TaylorParts parts;
    int32 iteration = 0;
    if (const status_t status = run.Regenerate(archive); status != B_OK) return status;
    if (const status_t status = parts.Regenerate(archive); status != B_OK) return status;
    if (const status_t status = archive.FindInt32(kIterationField, &iteration); status != B_OK)
        return status;
    const double time = run.anchor + run.elapsed;
    Calculator::Recache();
    if (!parts.AreOf(Bodies()) || GetEpoch()->Time() != time) return B_BAD_DATA;
    parts_ = std::move(parts);
    iteration_ = iteration;
    LoadBodies();
    StartSteps();
    step_.Resume(run.inverseStep);
    anchored_ = true;
    anchor_ = run.anchor;
    elapsed_ = run.elapsed;
    lastReport_ = time;
    SetRunLimit(run.reports, run.until);
    return B_OK;
}

bool TaylorCalculator::IsUntouched() const {
    if (GetEpoch() != epoch_ || std::clamp(epoch_->Order(), kLeastOrder, kMostOrder) != order_ ||
        Cutoff() != runCutoff_ || CountBodies() != loadedBodies_ || !parts_.AreOf(Bodies()))
        return false;
    const auto& [r, v] = arrays_;
    for (int32 i = 0; i < CountBodies(); i++) {
        const Body& body = *BodyAt(i);
        if (body.Position() != ThreeVector{r[0][i], r[1][i], r[2][i]} ||
            body.Velocity() != ThreeVector{v[0][i], v[1][i], v[2][i]} ||
            body.M() != evaluator_.GM()[i])
            return false;
    }
    return true;
}

int32 TaylorCalculator::Calculate() {
    AnchorTime();
    const int32 reports = MakeReports();
    // Once a batch, and not once a step. What is no number stays none, so nothing is missed.
    if (!IsFinite()) return EndAtFiniteReport();
    StoreBodies();
    return reports;
}

bool TaylorCalculator::IsFinite() const {
    return std::isfinite(TBase()) && evaluator_.IsFinite();
}

int32 TaylorCalculator::MakeReports() {
    const int32 most = MostReports();
    const bool isSlow = int64{CountBodies()} * CountMassiveBodies() >= kSlowInteractions;
    const int32 looks = isSlow ? 1 : kQuickSteps;
    const bigtime_t start = system_time();
    int32 reports = 0;
    while (reports < most && !ShouldStop()) {
        if (reports > 0 && (reports & (looks - 1)) == 0 && system_time() - start > kLongestBatch)
            break;
        const ForceEvaluator::Result result = evaluator_.Evaluate(order_, Stop());
        if (result == ForceEvaluator::Result::kStopped) break;
        if (!(result == ForceEvaluator::Result::kCollision ? ReportCollision() : ReportStep()))
            break;
        reports++;
    }
    return reports;
}

// At the start of a run, and when somebody else has set the epoch's time since the last batch.
void TaylorCalculator::AnchorTime() {
    if (anchored_ && TBase() == lastReport_) return;
    anchored_ = true;
    anchor_ = lastReport_ = TBase();
    elapsed_ = 0.0;
}

void TaylorCalculator::LoadBodies() {
    evaluator_.Resize(CountBodies(), CountMassiveBodies());
    loadedBodies_ = CountBodies();
    for (int32 i = 0; i < CountBodies(); i++) {
        const Body& body = *BodyAt(i);
        const ThreeVector position = body.Position();
        const ThreeVector velocity = body.Velocity();
        evaluator_.Position(0)[i] = position.x;
        evaluator_.Position(1)[i] = position.y;
        evaluator_.Position(2)[i] = position.z;
        evaluator_.Velocity(0)[i] = velocity.x;
        evaluator_.Velocity(1)[i] = velocity.y;
        evaluator_.Velocity(2)[i] = velocity.z;
        evaluator_.GM()[i] = body.M();
    }
    for (int axis = 0; axis < 3; axis++) {
        arrays_.position[axis] = evaluator_.Position(axis);
        arrays_.velocity[axis] = evaluator_.Velocity(axis);
    }
}

// A pair touches within the sum of its radii, which the evaluator forms as it goes: a square for
// each pair would grow with the pairs.
void TaylorCalculator::ComputeKissDist() {
    for (int32 i = 0; i < CountBodies(); i++)
        evaluator_.Radius()[i] = BodyAt(i)->Radius();
}

void TaylorCalculator::StoreBodies() const {
    for (int32 i = 0; i < CountBodies(); i++) {
        const auto& [r, v] = arrays_;
        BodyAt(i)->SetPosition({r[0][i], r[1][i], r[2][i]});
        BodyAt(i)->SetVelocity({v[0][i], v[1][i], v[2][i]});
    }
}

// Distances that are no numbers count as touching; what is at no place collides with nothing.
bool TaylorCalculator::ReportCollision() {
    if (!IsFinite()) return false;
    for (const CollidingPair& pair : evaluator_.Collisions())
        AddCollision(BodyAt(pair.later)->ID(), BodyAt(pair.earlier)->ID());
    PostCollision();
    lastReport_ = anchor_ + elapsed_;
    ReportInPlace(lastReport_, arrays_);
    return true;
}

bool TaylorCalculator::ReportStep() {
    if (!evaluator_.Interacts()) return ReportStraight();
    step_.Adapt(evaluator_.Rate());
    if (elapsed_ + step_.Powers().h == elapsed_) {
        EndRun(RunEnding::Reason::kTimeStands);
        return false;
    }
    TakeStep();
    lastReport_ = anchor_ + elapsed_;
    Report(lastReport_, arrays_);
    return true;
}

// Steps would grow to what no clock shows. The bodies go to the time that was asked for instead; if
// none was, they stay.
bool TaylorCalculator::ReportStraight() {
    const double seconds = TimeLimit() - (anchor_ + elapsed_);
    const bool isAhead = seconds > 0.0;
    if (isAhead) {
        parts_.MoveStraight(seconds, &evaluator_);
        anchored_ = false;
        Report(TimeLimit(), arrays_);
    }
    EndRun(RunEnding::Reason::kNothingInteracts);
    return isAhead;
}

void TaylorCalculator::TakeStep() {
    if (iteration_ < std::numeric_limits<int32>::max()) iteration_++;
    parts_.Advance(order_, step_.Powers(), &evaluator_);
    if (iteration_ > step_.PromotionInterval()) {
        parts_.Promote(order_);
        iteration_ = 0;
    }
    elapsed_ += step_.Powers().h;
}

int32 TaylorCalculator::EndAtFiniteReport() {
    const int32 reports = KeepFiniteReports();
    // Without one the bodies are still where the batch began.
    if (reports > 0) {
        const std::ptrdiff_t last = std::ptrdiff_t{3} * CountBodies() * (reports - 1);
        const double* r = RRep() + last;
        const double* v = VRep() + last;
        for (int32 i = 0; i < CountBodies(); i++, r += 3, v += 3) {
            BodyAt(i)->SetPosition({r[0], r[1], r[2]});
            BodyAt(i)->SetVelocity({v[0], v[1], v[2]});
        }
    }
    LoadBodies();
    parts_.ResortDels(Bodies());
    anchored_ = false;
    EndRun(RunEnding::Reason::kNotFinite);
    return reports;
}

void TaylorCalculator::EndRun(RunEnding::Reason reason) {
    RunEnding ending;
    ending.reason = reason;
    ending.time = TBase();
    if (reason == RunEnding::Reason::kNothingInteracts) return Calculator::EndRun(ending);
    if (const auto pair = evaluator_.FastestPair(Stop()))
        ending.pair = {BodyAt(pair->later)->ID(), BodyAt(pair->earlier)->ID(),
                       evaluator_.Distance(*pair)};
    Calculator::EndRun(ending);
}
