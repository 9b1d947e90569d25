#include "Calculation/LowOrderIntegrator.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "Calculation/RunState.h"
#include "Model/Epochs/EpochLimits.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kIterationField = "Iter";
constexpr const char* kMaxOrderField = "MaxOrd";

}  // namespace

std::optional<int32> LowOrderIntegrator::OrderFor(int32 asked) const {
    if (asked > kMaxLowOrder) return std::nullopt;
    return std::max(asked, kMinOrder);
}

BodyRows LowOrderIntegrator::MakeRoom(int32 bodies, int32 massive) {
    evaluator_.Resize(bodies, massive);
    BodyRows rows{
        .bodies = bodies, .massive = massive, .gm = evaluator_.GM(), .radius = evaluator_.Radius()};
    for (int axis = 0; axis < 3; axis++) {
        rows.position[axis] = evaluator_.Position(axis);
        rows.velocity[axis] = evaluator_.Velocity(axis);
    }
    return rows;
}

void LowOrderIntegrator::Begin(const Start& start) {
    parts_.ResortDels(start.bodies);
    if (!start.passesContacts) passed_.Clear();
    StartSteps(start);
    SetTime(start.time);
}

// From the shortest step on.
void LowOrderIntegrator::StartSteps(const Start& start) {
    order_ = start.order;
    cutoff_ = start.cutoff;
    step_.Restart(cutoff_, order_);
    passed_.SetBodies(start.bodies);
    contacts_.clear();
}

void LowOrderIntegrator::SetTime(double time) {
    anchor_ = time;
    elapsed_ = 0.0;
}

Integrator::Progress LowOrderIntegrator::Advance(double until, const StopFlags& stop) {
    const Outcome outcome = passed_.AreNone() ? Evaluate(stop) : EvaluateAsPoints(stop);
    if (outcome != Outcome::kReport) return {outcome};
    if (!evaluator_.Interacts()) return GoStraight(until);
    step_.Adapt(evaluator_.Rate());
    if (elapsed_ + step_.Powers().h == elapsed_) return {Outcome::kTimeStands};
    TakeStep();
    return {Outcome::kReport, 1};
}

Integrator::Outcome LowOrderIntegrator::Evaluate(const StopFlags& stop) {
    contacts_.clear();
    switch (evaluator_.Evaluate(order_, stop)) {
        case ForceEvaluator::Result::kStopped:
            return Outcome::kStopped;
        case ForceEvaluator::Result::kCollision:
            return Outcome::kContact;
        default:
            return Outcome::kReport;
    }
}

// Who touches whom is looked for one by one, and for the forces nobody has a radius.
Integrator::Outcome LowOrderIntegrator::EvaluateAsPoints(const StopFlags& stop) {
    if (evaluator_.ListCollisions(stop) == ForceEvaluator::Result::kStopped)
        return Outcome::kStopped;
    contacts_ = evaluator_.Collisions();
    passed_.KeepTouching(&contacts_);
    if (!contacts_.empty()) return Outcome::kContact;
    double* const radius = evaluator_.Radius();
    radii_.assign(radius, radius + evaluator_.CountBodies());
    std::fill_n(radius, radii_.size(), 0.0);
    const Outcome outcome = Evaluate(stop);
    std::copy(radii_.begin(), radii_.end(), radius);
    // In one place: the pull has no end.
    return outcome == Outcome::kContact ? Outcome::kNotFinite : outcome;
}

// Steps would grow to what no clock shows.
Integrator::Progress LowOrderIntegrator::GoStraight(double until) {
    const double seconds = until - Time();
    if (!(seconds > 0.0)) return {Outcome::kNothingInteracts};
    parts_.MoveStraight(seconds, &evaluator_);
    SetTime(until);
    return {Outcome::kNothingInteracts, 1};
}

void LowOrderIntegrator::TakeStep() {
    if (iteration_ < std::numeric_limits<int32>::max()) iteration_++;
    parts_.Advance(order_, step_.Powers(), &evaluator_);
    if (iteration_ > step_.PromotionInterval()) {
        parts_.Promote(order_);
        iteration_ = 0;
    }
    elapsed_ += step_.Powers().h;
}

status_t LowOrderIntegrator::Archive(BMessage* into) const {
    if (const status_t status = parts_.Archive(into); status != B_OK) return status;
    if (const status_t status = passed_.Archive(into); status != B_OK) return status;
    if (const status_t status = into->AddInt32(kIterationField, iteration_); status != B_OK)
        return status;
    return into->AddInt32(kMaxOrderField, kMaxLowOrder);
}

void LowOrderIntegrator::DescribeFields(FieldDescriptions* into) {
    TaylorParts::DescribeFields(into);
    PassedPairs::DescribeFields(into);
    DescribeField(into, kIterationField, B_INT32_TYPE, "1", "not used",
                  "steps since the parts were last moved up");
    DescribeField(into, kMaxOrderField, B_INT32_TYPE, "1", "not read",
                  std::to_string(kMaxLowOrder));
}

void LowOrderIntegrator::Regenerate(const BMessage* archive) {
    iteration_ = 0;
    // Those of another epoch have not met in this one.
    passed_.Clear();
    int32 iteration = 0;
    if (archive == nullptr || archive->FindInt32(kIterationField, &iteration) != B_OK) return;
    if (parts_.Regenerate(*archive) == B_OK) iteration_ = iteration;
    passed_.Regenerate(*archive);
}

status_t LowOrderIntegrator::ArchiveRun(BMessage* into) const {
    return RunState{step_.Inverse(), anchor_, elapsed_}.Archive(into);
}

status_t LowOrderIntegrator::ResumeRun(const BMessage& archive, const Start& start) {
    RunState run;
    TaylorParts parts;
    int32 iteration = 0;
    if (const status_t status = run.Regenerate(archive); status != B_OK) return status;
    if (const status_t status = parts.Regenerate(archive); status != B_OK) return status;
    if (const status_t status = archive.FindInt32(kIterationField, &iteration); status != B_OK)
        return status;
    if (!parts.AreOf(start.bodies) || start.time != run.anchor + run.elapsed) return B_BAD_DATA;
    parts_ = std::move(parts);
    passed_.Regenerate(archive);
    iteration_ = iteration;
    StartSteps(start);
    step_.Resume(run.inverseStep);
    anchor_ = run.anchor;
    elapsed_ = run.elapsed;
    return B_OK;
}
