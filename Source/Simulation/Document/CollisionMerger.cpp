#include "Simulation/Document/CollisionMerger.h"

#include <cmath>
#include <unordered_map>
#include <utility>

#include "Calculation/CollisionMailbox.h"
#include "Model/Commands/DeleteSystemCommand.h"
#include "Model/Epochs/AbEpoch.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BMessage.h"

namespace {

double KineticEnergy(const Body& body) {
    return 0.5 * body.M() * Dot(body.Velocity(), body.Velocity());
}

ThreeVector AngularMomentum(const Body& body) {
    const ThreeVector r = body.Position(), v = body.Velocity();
    return body.M() *
           ThreeVector{r.y * v.z - r.z * v.y, r.z * v.x - r.x * v.z, r.x * v.y - r.y * v.x};
}

// -(GM)1 (GM)2 / r; 0 at zero distance, where it is infinite before and after.
double BindingEnergy(const Body& one, const Body& other) {
    const double distance = Length(one.Position() - other.Position());
    return distance > 0.0 ? -one.M() * other.M() / distance : 0.0;
}

rgb_color MixColors(rgb_color a, double weightA, rgb_color b, double weightB) {
    const double w = 1.0 / (weightA + weightB);
    const auto mix = [=](uint8 channelA, uint8 channelB) {
        return static_cast<uint8>((weightB * channelB + weightA * channelA) * w);
    };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), 255};
}

// Numbers that cannot be told apart count as touching.
bool Touch(const Body& one, const Body& other) {
    const double reach = one.Radius() + other.Radius();
    const ThreeVector way = one.Position() - other.Position();
    return !(Dot(way, way) > reach * reach);
}

// What two bodies become, as far as it is numbers.
struct Sum {
    double weightA, weightB;
    double m, radius;
    ThreeVector position, velocity;

    Sum(const Body& a, const Body& b) : m(a.M() + b.M()) {
        // Masses that cancel weigh alike.
        weightA = m == 0.0 ? 1.0 : a.M();
        weightB = m == 0.0 ? 1.0 : b.M();
        const double w = 1.0 / (weightA + weightB);
        position = w * weightA * a.Position() + w * weightB * b.Position();
        velocity = w * weightA * a.Velocity() + w * weightB * b.Velocity();
        radius =
            std::pow(std::pow(a.Radius(), 3.0) + std::pow(b.Radius(), 3.0), 0.3333333333333333);
    }
    // No document may hold anything else.
    bool IsFinite() const {
        return ::IsFinite(position) && ::IsFinite(velocity) && std::isfinite(m) &&
               std::isfinite(radius);
    }
};

// The resolution of one message, under the write lock.
class Resolution {
public:
    Resolution(EpochPortal* portal, const std::string& joiner)
        : portal_(portal), joiner_(joiner), alive_(portal->BodiesInMassOrder()) {
        for (const Body* body : alive_)
            mergedInto_[body->ID()] = body->ID();
    }

    // The lighter body p and the heavier q touch. A body absorbed before is not looked up again as
    // p: what else it touched stays apart, touches again when the run resumes, and is resolved
    // then.
    void ResolvePair(int64 p, int64 q);
    void DeleteAbsorbed();
    // Of a message without any merger.
    std::optional<RunEnding> FindTouching(const BMessage& collisions) const;
    MergeResult TakeResult() { return std::move(result_); }

private:
    int64 SurvivorOf(int64 id) const;
    void Merge(Body* a, Body* b, const Sum& sum);
    double EnergyAmong(const Body& body) const;

    EpochPortal* const portal_;
    const std::string& joiner_;
    std::vector<Body*> alive_;
    std::unordered_map<int64, int64> mergedInto_;
    std::vector<int64> absorbed_;
    MergeResult result_;
};

void Resolution::ResolvePair(int64 p, int64 q) {
    if (!mergedInto_.contains(p) || !mergedInto_.contains(q) || mergedInto_[p] != p) return;
    const int64 survivor = SurvivorOf(q);
    // Reserved: a body that has one cannot be found by it.
    if (p < 0 || survivor < 0) return;

    const AbEpoch* epoch = portal_->FocusEpoch();
    auto* a = dynamic_cast<Body*>(epoch->SystemFromID(p));
    auto* b = dynamic_cast<Body*>(epoch->SystemFromID(survivor));
    if (!a || !b || a == b) return;
    const Sum sum(*a, *b);
    if (!sum.IsFinite()) return;

    Merge(a, b, sum);
    absorbed_.push_back(p);
    mergedInto_[p] = survivor;
}

int64 Resolution::SurvivorOf(int64 id) const {
    for (int64 next = mergedInto_.at(id); next != id; next = mergedInto_.at(id))
        id = next;
    return id;
}

std::optional<RunEnding> Resolution::FindTouching(const BMessage& collisions) const {
    for (const auto [p, q] : CollisionMailbox::PairsOf(collisions))
        for (const Body* a : alive_) {
            if (a->ID() != p) continue;
            for (const Body* b : alive_)
                if (a != b && b->ID() == q && Touch(*a, *b))
                    return RunEnding{RunEnding::Reason::kNotMerged, portal_->FocusEpoch()->Time(),
                                     RunEnding::Pair{p, q, Length(a->Position() - b->Position())}};
        }
    return std::nullopt;
}

void Resolution::Merge(Body* a, Body* b, const Sum& sum) {
    const double kineticBefore = KineticEnergy(*a) + KineticEnergy(*b);
    // The pair's own binding energy is in both sums.
    const double before = kineticBefore + EnergyAmong(*a) + EnergyAmong(*b) - BindingEnergy(*a, *b);
    const ThreeVector spinBefore = AngularMomentum(*a) + AngularMomentum(*b);
    result_.mergers.push_back(
        {b->ID(), a->ID(), b->Name(), a->Name(), portal_->FocusEpoch()->Time(), 0.0});

    b->SetPosition(sum.position);
    b->SetVelocity(sum.velocity);
    b->SetM(sum.m);
    b->SetRadius(sum.radius);
    b->SetTrailColor(MixColors(a->TrailColor(), sum.weightA, b->TrailColor(), sum.weightB));
    b->SetDiscColor(MixColors(a->DiscColor(), sum.weightA, b->DiscColor(), sum.weightB));
    b->SetName(b->Name() + joiner_ + a->Name());

    std::erase(alive_, a);
    result_.mergers.back().kineticEnergyLoss = kineticBefore - KineticEnergy(*b);
    result_.angularMomentumChange += AngularMomentum(*b) - spinBefore;
    result_.energyChange += KineticEnergy(*b) + EnergyAmong(*b) - before;
}

double Resolution::EnergyAmong(const Body& body) const {
    double energy = 0.0;
    for (const Body* other : alive_)
        if (other != &body) energy += BindingEnergy(body, *other);
    return energy;
}

void Resolution::DeleteAbsorbed() {
    for (const int64 id : absorbed_) {
        // An absorbed body in focus hands the focus to the body that it became part of.
        DeleteSystemCommand command(portal_, id, SurvivorOf(id));
        command.Execute();
    }
}

// Under the write lock, in the focus epoch.
MergeResult Resolve(EpochPortal* portal, const BMessage& collisions, const std::string& joiner) {
    AbEpoch* const epoch = portal->FocusEpoch();
    // The mergers are part of the run, even if it was paused just now and is a record already.
    const bool wasWriteable = epoch->Writeable();
    epoch->SetWriteable(true);

    Resolution resolution(portal, joiner);
    for (const auto [p, q] : CollisionMailbox::PairsOf(collisions))
        resolution.ResolvePair(p, q);
    resolution.DeleteAbsorbed();
    MergeResult result = resolution.TakeResult();
    if (result.mergers.empty()) result.unmerged = resolution.FindTouching(collisions);

    epoch->SetWriteable(wasWriteable);
    return result;
}

}  // namespace

MergeResult MergeCollidingBodies(EpochPortal* portal, const BMessage& collisions,
                                 const std::string& joiner, const AbEpoch* touchedIn) {
    portal->CommitChanges();
    MergeResult result;
    {
        const WriteGuard guard(portal);
        if (touchedIn != nullptr && touchedIn != portal->FocusEpoch()) return {};
        result = Resolve(portal, collisions, joiner);
    }
    portal->TellObservers(kBodyDataChanged);
    return result;
}
