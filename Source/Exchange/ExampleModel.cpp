#include "Exchange/ExampleModel.h"

#include <algorithm>
#include <numbers>

#include "Exchange/PlummerSphere.h"
#include "Exchange/SeededRandom.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/CompositeSystem.h"
#include "Resources/Exchange.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

// Of a name that several systems have.
constexpr int64 kAmbiguous = kNoSystemID;

MassSystem* ChildNamed(const MassSystem& parent, const std::string& name) {
    for (int32 i = 0; i < parent.CountChildren(); ++i)
        if (parent.ChildAt(i)->Name() == name) return parent.ChildAt(i);
    return nullptr;
}

}  // namespace

std::unique_ptr<Epoch> ExampleModel::Build(const ExampleText& text) {
    identifiers_.clear();
    references_.clear();
    lines_.clear();
    nextIdentifier_ = 0;
    auto epoch = std::make_unique<Epoch>();
    epoch->SetName(text.epochName);
    epoch->SetTime(text.time);
    epoch->SetTimeUval(text.timeUnit);
    epoch->SetCutoff(text.cutoff);
    epoch->SetOrder(text.order);
    epoch->SetCOMOnGo(text.centred);
    for (const ExampleSystem& system : text.systems)
        if (!Add(system, epoch->RootSystem())) return nullptr;
    if (!SetReferences()) return nullptr;

    chosen_ = {};
    const bool areThere =
        Choose(text.focus, &chosen_.focus) && Choose(text.followed, &chosen_.followed) &&
        Choose(text.turnsAbout, &chosen_.turnsAbout) && Choose(text.turnsWith, &chosen_.turnsWith);
    return areThere ? std::move(epoch) : nullptr;
}

bool ExampleModel::Choose(const ExampleMention& mention, int64* id) {
    return mention.name.empty() || Find(mention.name, mention.line, kTextNoSuchSystem, id);
}

int ExampleModel::LineOf(int64 id) const {
    const auto found = lines_.find(id);
    return found == lines_.end() ? 0 : found->second;
}

bool ExampleModel::Fail(int line, int32 text, std::initializer_list<std::string_view> values) {
    line_ = line;
    reason_ = FillIn(resources_.InterfaceLabel(text), values);
    return false;
}

bool ExampleModel::Find(const std::string& name, int line, int32 otherwise, int64* id) {
    const auto found = identifiers_.find(name);
    if (found == identifiers_.end()) return Fail(line, otherwise, {name});
    *id = found->second;
    return *id != kAmbiguous || Fail(line, kTextSeveralSystems, {name});
}

// Systems may be shown relative to those that stand below them.
bool ExampleModel::SetReferences() {
    for (const Reference& reference : references_) {
        int64 id = kNoSystemID;
        if (!Find(reference.name, reference.line, kTextNoOtherSystem, &id)) return false;
        if (id == reference.system->ID())
            return Fail(reference.line, kTextNoOtherSystem, {reference.name});
        reference.system->SetRelativeTo(id);
    }
    return true;
}

bool ExampleModel::Add(const ExampleSystem& text, MassSystem* parent) {
    if (text.kind == ExampleSystem::Kind::kCluster) return AddCluster(text, parent);
    if (text.kind == ExampleSystem::Kind::kBelt) return AddBelt(text, parent);
    const int64 id = GiveIdentifier(text);
    std::unique_ptr<DisplayedSystem> system;
    if (text.kind == ExampleSystem::Kind::kGroup) {
        auto group = std::make_unique<CompositeSystem>(text.name.c_str(), id, text.trail, text.disc,
                                                       kOriginID);
        if (!AddMembers(text, group.get())) return false;
        system = std::move(group);
    } else {
        system = std::make_unique<Body>(text.name.c_str(), id, text.trail, text.disc, kOriginID);
        system->SetM(text.mass);
        system->SetRadius(text.radius);
    }
    if (!Place(text, *parent, system.get())) return false;
    SetLook(text, system.get());
    return parent->AddChild(system.release()) == B_OK;
}

bool ExampleModel::AddMembers(const ExampleSystem& text, CompositeSystem* group) {
    for (const ExampleSystem& member : text.members)
        if (!Add(member, group)) return false;
    return true;
}

bool ExampleModel::AddCluster(const ExampleSystem& text, MassSystem* parent) {
    if (text.count == 0 || text.mass == 0.0 || text.length == 0.0)
        return Fail(text.line, kTextClusterIncomplete);
    int32 number = 0;
    for (const PlummerStar& star : PlummerSphere(text.count, text.mass, text.length, text.seed)) {
        ExampleSystem body = text;
        body.kind = ExampleSystem::Kind::kBody;
        body.name += ' ' + std::to_string(++number);
        body.mass = text.mass / text.count;
        body.position = star.position;
        body.velocity = text.speeds * star.velocity;
        if (!Add(body, parent)) return false;
    }
    return true;
}

// Orbits at equal distances from one another, turned as chance will have it in their planes, with
// nodes and places on them likewise.
bool ExampleModel::AddBelt(const ExampleSystem& text, MassSystem* parent) {
    if (text.count == 0 || !text.orbit) return Fail(text.line, kTextBeltIncomplete);
    constexpr double kTurn = 2.0 * std::numbers::pi;
    SeededRandom random(text.seed);
    const double inner = text.orbit->elements.semiMajorAxis;
    const double breadth = text.outer == 0.0 ? 0.0 : text.outer - inner;
    for (int32 i = 0; i < text.count; ++i) {
        ExampleSystem body = text;
        body.kind = ExampleSystem::Kind::kBody;
        body.name += ' ' + std::to_string(i + 1);
        KeplerOrbit& orbit = body.orbit->elements;
        orbit.semiMajorAxis = inner + breadth * i / std::max(text.count - 1, 1);
        orbit.ascendingNode = kTurn * random.Uniform();
        orbit.pericentreArgument = kTurn * random.Uniform();
        orbit.meanAnomaly = kTurn * random.Uniform();
        if (!Add(body, parent)) return false;
    }
    return true;
}

bool ExampleModel::Place(const ExampleSystem& text, const MassSystem& parent, MassSystem* system) {
    if (!text.orbit && !text.position && !text.velocity) return true;
    const bool isGroup = text.kind == ExampleSystem::Kind::kGroup;
    if (isGroup && !(system->M() > 0.0)) return Fail(text.line, kTextGroupMassless);
    if (!text.orbit) {
        if (text.position) system->SetPosition(*text.position);
        if (text.velocity) system->SetVelocity(*text.velocity);
        return true;
    }
    const MassSystem* const centre = ChildNamed(parent, text.orbit->centre);
    if (centre == nullptr) return Fail(text.line, kTextNoCentre, {text.orbit->centre});
    if (!(centre->M() > 0.0)) return Fail(text.line, kTextCentreMassless, {text.orbit->centre});
    ThreeVector position;
    ThreeVector velocity;
    text.orbit->elements.GetState(centre->M() + system->M(), &position, &velocity);
    system->SetPosition(centre->Position() + position);
    system->SetVelocity(centre->Velocity() + velocity);
    return true;
}

void ExampleModel::SetLook(const ExampleSystem& text, DisplayedSystem* system) {
    system->SetTrailOn(text.trailOn);
    system->SetDiscOn(text.discOn);
    // The setters ignore 0, which stands for the program's own choice.
    system->SetPositionUval(text.shownIn.position);
    system->SetSpeedUval(text.shownIn.speed);
    system->SetMassUval(text.shownIn.mass);
    system->SetRadiusUval(text.shownIn.radius);
    if (!text.relativeTo.empty()) references_.push_back({system, text.relativeTo, text.line});
}

int64 ExampleModel::GiveIdentifier(const ExampleSystem& text) {
    const int64 id = nextID_ ? nextID_() : nextIdentifier_++;
    const auto [entry, isNew] = identifiers_.emplace(text.name, id);
    if (!isNew) entry->second = kAmbiguous;
    lines_.emplace(id, text.line);
    return id;
}
