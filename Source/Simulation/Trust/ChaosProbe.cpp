#include "Simulation/Trust/ChaosProbe.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Calculation/Calculator.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Simulation/Document/SystemState.h"

using Finding = RunHistory::Finding;

namespace {

constexpr int32 kOrder = 16;
constexpr double kCutoff = 1e-16;
constexpr int32 kIntervals = 512;
// A shadow that is farther off is brought nearer.
constexpr double kFar = 1e-9;

std::unique_ptr<Epoch> StartOf(const AbEpoch& epoch) {
    std::unique_ptr<AbEpoch> copy(epoch.Parent()->Copy());
    if (dynamic_cast<Epoch*>(copy.get()) == nullptr) copy = std::make_unique<Epoch>();
    copy->SetOrder(kOrder);
    copy->SetCutoff(kCutoff);
    copy->SetOnContact(kContactPasses);
    return std::unique_ptr<Epoch>(static_cast<Epoch*>(copy.release()));
}

double Square(const ThreeVector& v) {
    return Dot(v, v);
}

// Any direction will do; the same each time.
ThreeVector DirectionOf(std::size_t body) {
    const double angle = 2.4 * static_cast<double>(body) + 0.7;
    return ThreeVector{std::cos(angle), std::sin(angle), 0.5 * std::sin(3 * angle)};
}

}  // namespace

ChaosProbe::ChaosProbe(const AbEpoch& epoch)
    : start_(epoch.Parent()->Time()),
      end_(epoch.Time()),
      span_(std::fabs(end_ - start_)),
      motion_(StartOf(epoch)),
      shadow_(StartOf(epoch)) {}

Finding ChaosProbe::Make(const RunHistory::Progress& progress) {
    motion_.Prepare(end_ < start_);
    shadow_.Prepare(end_ < start_);
    Displace();
    bool isHeld = false;
    bool isShadowHeld = false;
    bool isWanted = true;
    for (int32 i = 1; i <= kIntervals; i++) {
        const double part = static_cast<double>(i) / kIntervals;
        const double time = i == kIntervals ? end_ : start_ + (end_ - start_) * part;
        const auto goesOn = [&] { return isWanted = progress(part); };
        if (!RunTo(&motion_, std::exchange(isHeld, true), time, goesOn) ||
            !RunTo(&shadow_, std::exchange(isShadowHeld, true), time, goesOn))
            return isWanted ? Finding::kLost : Finding::kCancelled;
        const double distance = Distance();
        if (!(distance > 0.0) || !std::isfinite(distance)) return Finding::kLost;
        growth_.push_back(gained_ + std::log(distance / kDisplacement));
        if (distance > kFar) {
            BringNearer(distance);
            isShadowHeld = false;
        }
        if (!progress(part)) return Finding::kCancelled;
    }
    return Finding::kFound;
}

bool ChaosProbe::RunTo(SideRun* run, bool isHeld, double time,
                       const std::function<bool()>& goesOn) {
    run->GetCalculator()->SetRunLimit(0, time);
    return run->Run(isHeld, goesOn) && run->Time() == time;
}

void ChaosProbe::Displace() {
    const WriteGuard guard(shadow_.Portal());
    const std::vector<Body*> bodies = shadow_.Portal()->BodiesInMassOrder();
    double places = 0.0;
    double speeds = 0.0;
    for (const Body* const body : bodies) {
        places += Square(body->Position());
        speeds += Square(body->Velocity());
    }
    scale_ = std::sqrt(places);
    speed_ = std::sqrt(speeds);
    for (std::size_t i = 0; i < bodies.size(); i++) {
        const double far = std::sqrt(Square(bodies[i]->Position()));
        bodies[i]->SetPosition(bodies[i]->Position() + DirectionOf(i) * (kDisplacement * far));
    }
}

double ChaosProbe::Distance() {
    const SystemState motion = TakeState(motion_.Portal());
    const SystemState shadow = TakeState(shadow_.Portal());
    double places = 0.0;
    double speeds = 0.0;
    for (std::size_t i = 0; i < motion.CountBodies(); i++) {
        places += Square(shadow.Position(i) - motion.Position(i));
        speeds += Square(shadow.Velocity(i) - motion.Velocity(i));
    }
    return std::sqrt((scale_ > 0.0 ? places / (scale_ * scale_) : 0.0) +
                     (speed_ > 0.0 ? speeds / (speed_ * speed_) : 0.0));
}

void ChaosProbe::BringNearer(double distance) {
    const SystemState motion = TakeState(motion_.Portal());
    const double part = kDisplacement / distance;
    gained_ -= std::log(part);
    const WriteGuard guard(shadow_.Portal());
    const std::vector<Body*> bodies = shadow_.Portal()->BodiesInMassOrder();
    for (std::size_t i = 0; i < bodies.size(); i++) {
        const ThreeVector r = motion.Position(i);
        const ThreeVector v = motion.Velocity(i);
        bodies[i]->SetPosition(r + (bodies[i]->Position() - r) * part);
        bodies[i]->SetVelocity(v + (bodies[i]->Velocity() - v) * part);
    }
}

// Of each half of an interval's logarithm the largest: near to a star a difference is for a moment
// larger than before and after.
std::optional<double> ChaosProbe::FoldingTime() const {
    if (growth_.size() < kIntervals) return std::nullopt;
    const auto quarter = growth_.begin() + kIntervals / 4;
    const auto middle = growth_.begin() + kIntervals / 2;
    const double half = *std::max_element(quarter, middle);
    const double whole = *std::max_element(middle, growth_.end());
    if (!(whole - half > std::log(kLeastGrowth))) return std::nullopt;
    return 0.5 * span_ / (whole - half);
}
