#include "Calculation/Series/SeriesIntegrator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Calculation/Series/SeriesInstances.h"
#include "Calculation/StopFlags.h"
#include "Model/Epochs/EpochLimits.h"
#include "Model/Systems/Body.h"

namespace {

// Where the run stopped because a pair touched, rounding may show the two just apart.
constexpr double kTouchingSlack = 1e-9;

}  // namespace

std::optional<int32> SeriesIntegrator::OrderFor(int32 asked) const {
    if (asked <= kMaxLowOrder) return std::nullopt;
    return SeriesForces::OrderFor(asked, 0);
}

BodyRows SeriesIntegrator::MakeRoom(int32 bodies, int32 massive) {
    if (runs_) kept_ = Record();
    runs_ = false;
    const auto count = static_cast<std::size_t>(bodies);
    numbers_.assign(8 * count, 0.0);
    double* next = numbers_.data();
    const auto take = [&] { return std::exchange(next, next + count); };
    rows_ = {.bodies = bodies, .massive = massive};
    for (int axis = 0; axis < 3; axis++) {
        rows_.position[axis] = take();
        rows_.velocity[axis] = take();
    }
    rows_.gm = take();
    rows_.radius = take();
    now_.Resize(bodies, massive);
    return rows_;
}

void SeriesIntegrator::Begin(const Start& start) {
    Take(start);
    const SeriesRecord record = std::exchange(kept_, {});
    const std::optional<bool> isThere = TakeUp(record);
    if (isThere == false) StartAfresh();
    if (!isThere) awaited_ = record;
    runs_ = true;
}

void SeriesIntegrator::Take(const Start& start) {
    order_ = start.order;
    cutoff_ = std::clamp(start.cutoff, kMinSeriesTolerance, kMaxSeriesTolerance);
    time_ = start.time;
    isBackwards_ = start.isBackwards;
    passesContacts_ = start.passesContacts;
    overlaps_.clear();
    awaited_ = {};
    std::vector<int64> ids;
    for (const Body* const body : start.bodies)
        ids.push_back(body->ID());
    if (ids != ids_ || !passesContacts_) contacts_.ForgetPassed();
    ids_ = std::move(ids);
}

void SeriesIntegrator::StartAfresh() {
    stepper_.Resize(order_, rows_.bodies, rows_.massive);
    for (int32 i = 0; i < rows_.bodies; i++)
        stepper_.SetBody(i, {rows_.position[0][i], rows_.position[1][i], rows_.position[2][i]},
                         {rows_.velocity[0][i], rows_.velocity[1][i], rows_.velocity[2][i]},
                         rows_.gm[i]);
    contacts_.Resize(rows_.bodies, rows_.massive);
    // Of another moment than the one in which they touched.
    contacts_.ForgetPassedIf([this](const CollidingPair& pair) {
        const double reach = (1.0 + kTouchingSlack) * Reach(pair);
        return SquaredDistance(pair) > reach * reach;
    });
    stepper_.Start(cutoff_, time_, isBackwards_);
    awaited_ = {};
    theta_ = 0.0;
}

std::optional<bool> SeriesIntegrator::TakeUp(const SeriesRecord& record) {
    if (record.IsEmpty() || record.CountBodies() != static_cast<std::size_t>(rows_.bodies))
        return false;
    TakePassed(record);
    if (record.order != order_ || record.cutoff != cutoff_ ||
        std::signbit(record.place.scale) != isBackwards_)
        return false;
    stepper_.Resize(order_, rows_.bodies, rows_.massive);
    const double* at = record.states.data();
    for (int32 i = 0; i < rows_.bodies; i++, at += SeriesRecord::kNumbers) {
        stepper_.SetBody(i, {at[0], at[1], at[2]}, {at[3], at[4], at[5]}, rows_.gm[i]);
        stepper_.SetLow(i, {at[6], at[7], at[8]}, {at[9], at[10], at[11]});
    }
    contacts_.Resize(rows_.bodies, rows_.massive);
    stepper_.Resume(cutoff_, record.place);
    theta_ = 0.0;
    if (record.theta > 0.0) return std::nullopt;
    return record.place.time.high == time_ && RowsAre(stepper_.Begin());
}

void SeriesIntegrator::TakePassed(const SeriesRecord& record) {
    contacts_.ForgetPassed();
    for (std::size_t i = 0; passesContacts_ && i < record.passed.size(); i += 2)
        contacts_.Pass({{record.passed[i], record.passed[i + 1]}});
}

std::optional<bool> SeriesIntegrator::MakeStepAgain(const SeriesRecord& record,
                                                    const StopFlags& stop) {
    if (!stepper_.HasStep()) {
        const SeriesStepper::Result result = MakeStep(stop);
        if (result == SeriesStepper::Result::kStopped) return std::nullopt;
        if (result != SeriesStepper::Result::kDone) return false;
    }
    if (record.theta > stepper_.Step().Theta()) return false;
    do {
        if (!isSearched_ && !FindContacts(stop)) return std::nullopt;
        if (!hasContact_ || contacts_.Theta() >= record.theta) break;
        if (!passesContacts_) return false;  // went through it, as was allowed then
        PassContacts();
    } while (true);
    theta_ = record.theta;
    stepper_.Evaluate(theta_, &now_);
    // A report at a time that was asked for is there by its last place.
    const double last = std::nextafter(time_, HUGE_VAL) - time_;
    return std::fabs(stepper_.Step().TimeAt(theta_) - time_) <= last && RowsAre(now_);
}

bool SeriesIntegrator::RowsAre(const SplitStates& states) const {
    for (int32 i = 0; i < rows_.bodies; i++)
        for (int32 axis = 0; axis < 3; axis++) {
            const int32 slot = states.SlotOf(i);
            if (states.High()[SplitStates::Index(slot, axis)] != rows_.position[axis][i] ||
                states.High()[SplitStates::Index(slot, 3 + axis)] != rows_.velocity[axis][i])
                return false;
        }
    return true;
}

// Not when the run begins: a step of many bodies takes longer than a pause may wait.
bool SeriesIntegrator::TakeUpAwaited(const StopFlags& stop) {
    if (awaited_.IsEmpty()) return true;
    const std::optional<bool> isThere = MakeStepAgain(awaited_, stop);
    if (!isThere) return false;
    // What the step would have gone through has not been met.
    if (!*isThere) {
        TakePassed(awaited_);
        StartAfresh();
    }
    awaited_ = {};
    return true;
}

// Somebody else has set it: the step begins anew, with what is to be seen of the bodies.
void SeriesIntegrator::SetTime(double time) {
    if (time == time_) return;
    time_ = time;
    StartAfresh();
}

Integrator::Progress SeriesIntegrator::Advance(double until, const StopFlags& stop) {
    straight_.reset();
    if (!TakeUpAwaited(stop)) return {Outcome::kStopped};
    if (!stepper_.HasStep() || theta_ >= stepper_.Step().Theta()) {
        const SeriesStepper::Result result = MakeStep(stop);
        if (result != SeriesStepper::Result::kDone) return Fail(result, until);
    }
    if (!isSearched_ && !FindContacts(stop)) return {Outcome::kStopped};
    const SeriesStep& step = stepper_.Step();
    int32 part = 1;
    while (part < step.Parts() && step.ThetaOf(part) <= theta_)
        part++;
    double theta = step.ThetaOf(part);
    double time = step.TimeAt(theta);
    if (IsAhead(time_, until) && IsAhead(until, time)) {
        theta = std::clamp(step.ThetaAt(until), theta_, theta);
        time = until;
    }
    thetaBefore_ = theta_;
    if (hasContact_ && contacts_.Theta() <= theta) {
        overlaps_.clear();
        const double contact = std::max(contacts_.Theta(), theta_);
        MoveTo(contact, step.TimeAt(contact));
        return {Outcome::kContact, contact >= step.Theta() ? 1 : 0};
    }
    MoveTo(theta, time);
    return {Outcome::kReport, theta >= step.Theta() ? 1 : 0};
}

SeriesStepper::Result SeriesIntegrator::MakeStep(const StopFlags& stop) {
    const SeriesStepper::Result result = stepper_.MakeStep(stop);
    theta_ = 0.0;
    isSearched_ = false;
    if (result != SeriesStepper::Result::kDone) return result;
    SetRadii();
    contacts_.DropApart(stepper_.Store(), stepper_.Step().Theta());
    return result;
}

void SeriesIntegrator::PassContacts() {
    contacts_.Pass(Contacts());
    overlaps_.clear();
    if (hasContact_) isSearched_ = false;
}

void SeriesIntegrator::ForgetPassed() {
    contacts_.ForgetPassed();
    kept_.passed.clear();
    awaited_.passed.clear();
}

std::optional<Integrator::Motion> SeriesIntegrator::LastMotion() const {
    if (straight_) return Motion{&straight_->Step(), 0.0, straight_->Step().Theta()};
    if (!stepper_.HasStep()) return std::nullopt;
    return Motion{&stepper_.Step(), thetaBefore_, theta_};
}

void SeriesIntegrator::SetRadii() {
    for (int32 i = 0; i < rows_.bodies; i++)
        contacts_.SetRadius(i, rows_.radius[i]);
}

bool SeriesIntegrator::FindContacts(const StopFlags& stop) {
    const std::optional<bool> found =
        contacts_.Find(stepper_.Store(), stepper_.Kernels(), stepper_.Step(), stop);
    hasContact_ = found.value_or(false);
    isSearched_ = found.has_value();
    return isSearched_;
}

Integrator::Progress SeriesIntegrator::Fail(SeriesStepper::Result result, double until) {
    if (result == SeriesStepper::Result::kStopped) return {Outcome::kStopped};
    // Bodies in one place have no series, and those deep within each other no step.
    FindOverlaps();
    if (!overlaps_.empty()) return {Outcome::kContact};
    switch (result) {
        case SeriesStepper::Result::kTimeStands:
            return {Outcome::kTimeStands};
        case SeriesStepper::Result::kNothingPulls:
            return GoStraight(until);
        default:
            return {Outcome::kNotFinite};
    }
}

double SeriesIntegrator::SquaredDistance(const CollidingPair& pair) const {
    double square = 0.0;
    for (const double* const axis : rows_.position)
        square += (axis[pair.earlier] - axis[pair.later]) * (axis[pair.earlier] - axis[pair.later]);
    return square;
}

double SeriesIntegrator::Reach(const CollidingPair& pair) const {
    return rows_.radius[pair.earlier] + rows_.radius[pair.later];
}

void SeriesIntegrator::FindOverlaps() {
    overlaps_.clear();
    for (int32 i = rows_.massive - 1; i >= 0; i--)
        for (int32 j = rows_.bodies - 1; j > i; j--) {
            const CollidingPair pair{j, i};
            const double reach = Reach(pair);
            if (SquaredDistance(pair) <= reach * reach && !contacts_.IsPassed(pair))
                overlaps_.push_back(pair);
        }
}

// Steps would have no end.
Integrator::Progress SeriesIntegrator::GoStraight(double until) {
    if (!IsAhead(time_, until)) return {Outcome::kNothingInteracts};
    const double seconds = until - time_;
    straight_.emplace(rows_, time_, until);
    for (int axis = 0; axis < 3; axis++)
        for (int32 i = 0; i < rows_.bodies; i++)
            rows_.position[axis][i] += rows_.velocity[axis][i] * seconds;
    time_ = until;
    StartAfresh();
    return {Outcome::kNothingInteracts, 1};
}

void SeriesIntegrator::MoveTo(double theta, double time) {
    stepper_.Evaluate(theta, &now_);
    theta_ = theta;
    time_ = time;
    for (int32 i = 0; i < rows_.bodies; i++) {
        const double* const numbers = now_.High() + SplitStates::Index(now_.SlotOf(i), 0);
        for (int32 axis = 0; axis < 3; axis++) {
            rows_.position[axis][i] = numbers[axis * kSlots];
            rows_.velocity[axis][i] = numbers[(3 + axis) * kSlots];
        }
    }
}

SeriesRecord SeriesIntegrator::Record() const {
    if (!awaited_.IsEmpty()) {
        SeriesRecord record = awaited_;
        record.isUnchecked = true;
        return record;
    }
    // Before its first step a run starts afresh wherever it is taken up.
    if (stepper_.Place().scale == 0.0) return {};
    SeriesRecord record;
    record.order = order_;
    record.cutoff = cutoff_;
    record.place = stepper_.Place();
    record.theta = stepper_.HasStep() ? theta_ : 0.0;
    const SplitStates& begin = stepper_.Begin();
    for (int32 i = 0; i < rows_.bodies; i++)
        for (const double* const numbers : {begin.High(), begin.Low()})
            for (int32 row = 0; row < SplitStates::kRows; row++)
                record.states.push_back(numbers[SplitStates::Index(begin.SlotOf(i), row)]);
    for (const CollidingPair& pair : contacts_.Passed())
        record.passed.insert(record.passed.end(), {pair.later, pair.earlier});
    return record;
}

status_t SeriesIntegrator::Archive(BMessage* into) const {
    return (runs_ ? Record() : kept_).Archive(into);
}

void SeriesIntegrator::Regenerate(const BMessage* archive) {
    SeriesRecord record;
    if (archive == nullptr || record.Regenerate(*archive) != B_OK) record = {};
    kept_ = std::move(record);
    contacts_.ForgetPassed();  // they are those of another epoch
    runs_ = false;
}

void SeriesIntegrator::GoBackTo(double theta) {
    if (straight_) return GoBackOnStraightWay(theta);
    MoveTo(theta, stepper_.Step().TimeAt(theta));
}

void SeriesIntegrator::GoBackOnStraightWay(double theta) {
    straight_->EndAt(theta);
    const SeriesStep& step = straight_->Step();
    for (int32 i = 0; i < rows_.bodies; i++) {
        const ThreeVector position = step.BodyAt(i, theta).position;
        rows_.position[0][i] = position.x;
        rows_.position[1][i] = position.y;
        rows_.position[2][i] = position.z;
    }
    time_ = step.TimeAt(theta);
    StartAfresh();
}

// All is in the other record.
status_t SeriesIntegrator::ArchiveRun(BMessage*) const {
    return B_OK;
}

status_t SeriesIntegrator::ResumeRun(const BMessage& archive, const Start& start) {
    SeriesRecord record;
    const status_t status = record.Regenerate(archive);
    Take(start);
    runs_ = true;
    // Of a run that was stopped before its first step there is none.
    if (status == B_OK && record.IsEmpty()) {
        StartAfresh();
        return B_OK;
    }
    std::optional<bool> isThere = false;
    if (status == B_OK) isThere = TakeUp(record);
    if (!isThere && record.isUnchecked) {
        awaited_ = std::move(record);
        return B_OK;
    }
    StopFlags goOn;
    goOn.pauseCount = 0;
    if (!isThere) isThere = MakeStepAgain(record, goOn);
    runs_ = isThere == true;
    return runs_ ? B_OK : B_BAD_DATA;
}
