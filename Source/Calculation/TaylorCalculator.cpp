#include "Calculation/TaylorCalculator.h"

#include <cmath>
#include <limits>
#include <utility>

#include "Model/Epochs/AbEpoch.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BMessage.h"

namespace {

// Until an epoch tells another.
constexpr int32 kUsualOrder = 4;
// A batch is handed over after this time, however few reports it holds, so that consumers stay up
// to date and the model is not locked for long. Results do not depend on how a run is cut into
// batches.
constexpr bigtime_t kMaxBatch = 100'000;  // us
// Fewer reports than the pacing asks for at least are handed over so often that motion is seen.
constexpr int32 kFewReports = 10;
constexpr bigtime_t kMaxShortBatch = 45'000;  // us
// Steps of so many interactions take longer than it takes to look at the clock. Quicker ones look
// only once in so many, a power of two.
constexpr int64 kSlowInteractions = 10'000;
constexpr int32 kQuickSteps = 64;

// Another report would take it too long.
bool IsLongBatch(int32 reports, bigtime_t time) {
    return time > kMaxBatch || (reports < kFewReports && time + time / reports > kMaxShortBatch);
}

}  // namespace

TaylorCalculator::TaylorCalculator(EpochPortal* portal,
                                   const std::vector<ReportConsumer*>* consumers, BLooper* target)
    : Calculator(portal, consumers, target), integrator_(MakeIntegrator(kUsualOrder)) {}

status_t TaylorCalculator::Archive(BMessage* into, bool deep) const {
    if (const status_t status = Calculator::Archive(into, deep); status != B_OK) return status;
    return integrator_->Archive(into);
}

void TaylorCalculator::Regenerate(BMessage* archive) {
    ChooseIntegrator();
    integrator_->Regenerate(archive);
    epoch_ = nullptr;
}

void TaylorCalculator::ForgetPassed() {
    integrator_->ForgetPassed();
}

void TaylorCalculator::Recache() {
    Calculator::Recache();
    const int32 before = std::exchange(onContact_, GetEpoch()->OnContact());
    const bool mergesFromNowOn = onContact_ == kContactMerges && before != onContact_;
    // A display that is opened or closed in the middle of a run must not be seen in its results.
    // What a method carries need not add up to the bodies' places at every moment; so it is left
    // alone.
    if (IsHeldRun() && IsUntouched() && !mergesFromNowOn) {
        if (!knowBodies_) TellBodies();
        return TakeRadii();
    }
    epoch_ = nullptr;  // where memory is lacking there is no run to hold
    ChooseIntegrator();
    if (!integrator_->IsContinuous()) SetBackwards(false);
    LoadBodies();
    integrator_->Begin(StartAt(GetEpoch()->Time()));
    runsBegun_++;
    NoteRun();
}

// Whichever fits the epoch's order; the one that there is if it does.
void TaylorCalculator::ChooseIntegrator() {
    const int32 order = GetEpoch()->Order();
    if (integrator_->OrderFor(order)) return;
    integrator_ = MakeIntegrator(order);
    integrator_->SetThreads(threads_);
    integrator_->SetRanks(ranks_);
}

Integrator::Start TaylorCalculator::StartAt(double time) const {
    return {.order = *integrator_->OrderFor(GetEpoch()->Order()),
            .cutoff = Cutoff(),
            .time = time,
            .bodies = Bodies(),
            .isBackwards = IsBackwards(),
            .passesContacts = onContact_ != kContactMerges};
}

void TaylorCalculator::NoteRun() {
    epoch_ = GetEpoch();
    order_ = *integrator_->OrderFor(epoch_->Order());
    runCutoff_ = Cutoff();
    TellBodies();
}

void TaylorCalculator::AddWatcher(MotionWatcher* watcher) {
    watchers_.push_back(watcher);
    knowBodies_ = false;
}

void TaylorCalculator::TellBodies() {
    for (MotionWatcher* const watcher : watchers_)
        watcher->BodiesAre(GetEpoch()->Time(), Bodies(), CountMassiveBodies());
    knowBodies_ = true;
}

void TaylorCalculator::SetThreads(int32 threads) {
    threads_ = threads;
    integrator_->SetThreads(threads);
}

void TaylorCalculator::SetRanks(Ranks* ranks) {
    ranks_ = ranks;
    integrator_->SetRanks(ranks);
}

status_t TaylorCalculator::ArchiveRun(BMessage* into) const {
    if (!IsUntouched()) return B_NOT_ALLOWED;
    if (const status_t status = Archive(into, true); status != B_OK) return status;
    if (const status_t status = integrator_->ArchiveRun(into); status != B_OK) return status;
    return Left().Archive(into);
}

status_t TaylorCalculator::ResumeRun(const BMessage& archive) {
    RunLeft left;
    if (const status_t status = left.Regenerate(archive); status != B_OK) return status;
    epoch_ = nullptr;
    Calculator::Recache();
    onContact_ = GetEpoch()->OnContact();
    ChooseIntegrator();
    LoadBodies();
    SetBackwards(left.isBackwards);
    const Integrator::Start start = StartAt(GetEpoch()->Time());
    if (const status_t status = integrator_->ResumeRun(archive, start); status != B_OK)
        return status;
    NoteRun();
    SetRunLimit(left.steps, left.until);
    return B_OK;
}

bool TaylorCalculator::IsUntouched() const {
    return epoch_ != nullptr && GetEpoch() == epoch_ &&
           integrator_->OrderFor(epoch_->Order()) == order_ && Cutoff() == runCutoff_ &&
           bodies_.AreStill(Bodies());
}

void TaylorCalculator::LoadBodies() {
    bodies_.Load(Bodies(), integrator_->MakeRoom(CountBodies(), CountMassiveBodies()));
    TakeRadii();
}

// A method that cannot pass contacts must not see them.
void TaylorCalculator::TakeRadii() {
    if (onContact_ == kContactPasses && !integrator_->IsContinuous())
        return bodies_.IgnoreKissDist();
    bodies_.ComputeKissDist(Bodies());
}

int32 TaylorCalculator::Calculate() {
    // Somebody else has set the epoch's time since the last batch.
    if (integrator_->Time() != TBase()) integrator_->SetTime(TBase());
    const int32 reports = MakeReports();
    // Once a batch, and not once a step. What is no number stays none, so nothing is missed.
    if (!std::isfinite(TBase()) || !bodies_.AreFinite()) return EndAtFiniteReport(reports);
    bodies_.Store(Bodies());
    return reports;
}

int32 TaylorCalculator::MakeReports() {
    const int32 most = MostReports();
    const bool isSlow = int64{CountBodies()} * CountMassiveBodies() >= kSlowInteractions;
    const int32 looks = isSlow ? 1 : kQuickSteps;
    const bigtime_t start = system_time();
    int32 reports = 0;
    while (reports < most && !ShouldStop()) {
        if (reports > 0 && (reports & (looks - 1)) == 0 &&
            IsLongBatch(reports, system_time() - start))
            break;
        if (!MakeReport()) break;
        reports++;
        if (IsPictureReached()) break;
    }
    return reports;
}

bool TaylorCalculator::MakeReport() {
    const double from = integrator_->Time();
    auto [outcome, steps] = integrator_->Advance(TimeLimit(), Stop());
    if (outcome == Integrator::Outcome::kNothingInteracts && steps == 0 && Condition())
        steps = integrator_->Advance(EndOfStraightWay(), Stop()).steps;
    const bool hasMoved = outcome == Integrator::Outcome::kReport ||
                          outcome == Integrator::Outcome::kContact || steps > 0;
    if (hasMoved && Condition() && GoBackToCondition()) {
        outcome = Integrator::Outcome::kReport;
        steps = 0;
    }
    if (!watchers_.empty()) TellMotion(from);
    switch (outcome) {
        case Integrator::Outcome::kReport:
            Report(integrator_->Time(), bodies_.Coordinates(), steps);
            return true;
        case Integrator::Outcome::kContact:
            return ReportCollision(steps);
        case Integrator::Outcome::kNothingInteracts:
            return ReportStraight(steps);
        case Integrator::Outcome::kTimeStands:
            EndRun(RunEnding::Reason::kTimeStands);
            return false;
        case Integrator::Outcome::kNotFinite:
            EndRun(RunEnding::Reason::kNotFinite);
            return false;
        case Integrator::Outcome::kStopped:
            break;
    }
    return false;
}

bool TaylorCalculator::GoBackToCondition() {
    const auto motion = integrator_->LastMotion();
    if (!motion) return false;
    const auto moment = Condition()->MomentIn(*motion->step, motion->from, motion->to);
    if (!moment || *moment >= motion->to) return false;
    integrator_->GoBackTo(*moment);
    return true;
}

// Without a limit of time they would go on for ever: no farther than the condition asks for.
double TaylorCalculator::EndOfStraightWay() const {
    constexpr double kPastIt = 1.0 + 1e-9;  // whatever is rounded
    const std::optional<double> wait = Condition()->TimeOnStraightWay(bodies_.Coordinates());
    const double end = integrator_->Time() + kPastIt * wait.value_or(HUGE_VAL);
    return std::isfinite(end) ? end : std::numeric_limits<double>::quiet_NaN();
}

void TaylorCalculator::TellMotion(double from) const {
    const auto motion = integrator_->LastMotion();
    if (!motion || integrator_->Time() == from) return;
    for (MotionWatcher* const watcher : watchers_)
        watcher->Moved({*motion->step, motion->from, motion->to, from, integrator_->Time()});
}

// Distances that are no numbers count as touching; what is at no place collides with nothing.
bool TaylorCalculator::ReportCollision(int32 steps) {
    if (!std::isfinite(TBase()) || !bodies_.AreFinite()) return false;
    const double time = integrator_->Time();
    for (MotionWatcher* const watcher : watchers_)
        watcher->Touched(time, bodies_.Coordinates(), integrator_->Contacts());
    if (onContact_ == kContactPasses && integrator_->IsContinuous()) {
        integrator_->PassContacts();
        Report(time, bodies_.Coordinates(), steps);
        return true;
    }
    if (onContact_ == kContactPasses || (onContact_ == kContactMerges && IsBackwards())) {
        EndAtContact(steps);
        return true;
    }
    for (const CollidingPair& pair : integrator_->Contacts())
        AddCollision(BodyAt(pair.later)->ID(), BodyAt(pair.earlier)->ID());
    PostCollision();
    ReportContact(time, bodies_.Coordinates(), steps);
    if (onContact_ == kContactStops) integrator_->PassContacts();
    return true;
}

// Bodies that can neither merge nor go on.
void TaylorCalculator::EndAtContact(int32 steps) {
    ReportContact(integrator_->Time(), bodies_.Coordinates(), steps);
    const CollidingPair& pair = integrator_->Contacts().front();
    RunEnding ending;
    ending.reason =
        IsBackwards() ? RunEnding::Reason::kTouchedBackwards : RunEnding::Reason::kNotFinite;
    ending.time = TBase();
    ending.pair = {BodyAt(pair.later)->ID(), BodyAt(pair.earlier)->ID(), bodies_.Distance(pair)};
    Calculator::EndRun(ending);
}

// The bodies have gone straight to the time that was asked for; if none was, they stay.
bool TaylorCalculator::ReportStraight(int32 steps) {
    const bool hasMoved = steps > 0;
    const bool waits = Condition().has_value();
    if (hasMoved) Report(integrator_->Time(), bodies_.Coordinates(), steps);
    if (waits && !Condition()) return hasMoved;  // what was waited for has come
    EndRun(RunEnding::Reason::kNothingInteracts);
    return hasMoved;
}

int32 TaylorCalculator::EndAtFiniteReport(int32 made) {
    const int32 reports = KeepFiniteReports(made);
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
    integrator_->Begin(StartAt(TBase()));
    EndRun(RunEnding::Reason::kNotFinite);
    return reports;
}

void TaylorCalculator::EndRun(RunEnding::Reason reason) {
    RunEnding ending;
    ending.reason = reason;
    ending.time = TBase();
    if (reason == RunEnding::Reason::kNothingInteracts) return Calculator::EndRun(ending);
    if (const auto pair = bodies_.FastestPair(Stop()))
        ending.pair = {BodyAt(pair->later)->ID(), BodyAt(pair->earlier)->ID(),
                       bodies_.Distance(*pair)};
    Calculator::EndRun(ending);
}

std::unique_ptr<Calculator> MakeCalculator(EpochPortal* portal,
                                           const std::vector<ReportConsumer*>* consumers,
                                           BLooper* target) {
    return std::make_unique<TaylorCalculator>(portal, consumers, target);
}
