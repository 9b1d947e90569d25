#include "Simulation/History/Moment.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

#include "Model/Systems/Body.h"
#include "Simulation/History/RunHistory.h"

namespace {

// What the run began from; a run whose start was deleted is all that there is.
const AbEpoch& StartOf(const AbEpoch& run) {
    const AbEpoch* const parent = run.Parent();
    const bool isThere = parent != nullptr && parent->RootSystem() != nullptr &&
                         parent->RootSystem()->CountChildren() > 0;
    return isThere ? *parent : run;
}

Body* FindBody(const AbEpoch& epoch, int64 id) {
    return dynamic_cast<Body*>(epoch.SystemFromID(id));
}

void RemoveOthers(MassSystem* group, const std::unordered_set<int64>& ids) {
    for (int32 i = group->CountChildren() - 1; i >= 0; i--) {
        MassSystem* const child = group->ChildAt(i);
        if (dynamic_cast<Body*>(child) == nullptr) {
            RemoveOthers(child, ids);
        } else if (!ids.contains(child->ID())) {
            const std::unique_ptr<MassSystem> doomed(child);
            group->RemoveChild(child);
        }
    }
}

// The body of the copy; one that came during the run is taken from the run's epoch.
Body* BodyIn(Epoch* copy, const AbEpoch& run, int64 id) {
    if (Body* const body = FindBody(*copy, id); body != nullptr) return body;
    const Body* const model = FindBody(run, id);
    auto body = model != nullptr ? std::make_unique<Body>(*model)
                                 : std::make_unique<Body>("", id, rgb_color{255, 255, 255, 255},
                                                          rgb_color{255, 255, 255, 255}, kOriginID);
    return copy->RootSystem()->AddChild(body.get()) == B_OK ? body.release() : nullptr;
}

void TakeLooks(const Body& from, Body* body) {
    body->SetTrailColor(from.TrailColor());
    body->SetDiscColor(from.DiscColor());
    body->SetTrailOn(from.TrailOn());
    body->SetDiscOn(from.DiscOn());
}

std::shared_ptr<Epoch> EpochOf(const AbEpoch& run, const RunCheckpoint& at) {
    auto* const copy = dynamic_cast<Epoch*>(StartOf(run).Copy());
    if (copy == nullptr) return nullptr;
    std::shared_ptr<Epoch> epoch(copy);
    const SystemState& state = at.state;
    at.PutSettings(copy);
    epoch->SetTimeUval(run.TimeUval());
    epoch->SetCOMOnGo(run.COMOnGo());
    epoch->SetCalculatorState(nullptr);
    RemoveOthers(epoch->RootSystem(), {state.ids.begin(), state.ids.end()});
    for (std::size_t i = 0; i < state.CountBodies(); i++) {
        Body* const body = BodyIn(copy, run, state.ids[i]);
        if (body == nullptr) continue;
        if (const Body* const now = FindBody(run, state.ids[i]); now != nullptr)
            TakeLooks(*now, body);
        at.PutBody(i, body);
    }
    return epoch;
}

// Where a body was; nothing where the samples have a gap, and before and after the body's life.
std::optional<Sample> PlaceAt(const RunHistory& history, const AbEpoch& run, int64 body,
                              double time) {
    const std::vector<Sample> samples = history.Samples(&run, body, time, time);
    for (std::size_t i = samples.size(); i-- > 0;) {
        if (samples[i].time == time) return samples[i];
        if (i == 0 || samples[i].time < time) break;
        if (samples[i - 1].time > time) continue;
        if (!samples[i].isJoined) break;
        return Between(samples[i - 1], samples[i], time);
    }
    return std::nullopt;
}

// Into which others have merged until then.
std::unordered_set<int64> SurvivorsUntil(double time, const std::vector<RunEvent>& events) {
    std::unordered_set<int64> survivors;
    for (const RunEvent& event : events)
        if (event.kind == RunEvent::Kind::kMerger && event.time < time && !event.before.empty())
            survivors.insert(event.before[0].id);
    return survivors;
}

}  // namespace

EpochPortal Moment::PortalFrom(const EpochPortal& document) const {
    EpochPortal portal(document);
    if (!IsPast()) return portal;
    portal.SetEpochTo(epoch.get());
    if (MassSystem* const system = epoch->SystemFromID(focus); system != nullptr)
        portal.SetSystemTo(system);
    return portal;
}

Moment ExactMoment(const AbEpoch& run, const RunCheckpoint& at) {
    Moment moment{&run, EpochOf(run, at), true};
    if (moment.epoch != nullptr) moment.epoch->SetCalculatorState(new BMessage(at.calculator));
    return moment;
}

Moment NearMoment(const AbEpoch& run, double time, const RunHistory& history) {
    const std::unordered_set<int64> survivors = SurvivorsUntil(time, history.Events(&run));
    RunCheckpoint near;
    near.state.time = time;
    near.order = run.Order();
    near.cutoff = run.Cutoff();
    near.onContact = run.OnContact();
    for (const int64 id : history.BodiesOf(&run)) {
        const Body* const first = FindBody(StartOf(run), id);
        const Body* const last = FindBody(run, id);
        const Body* const model =
            last != nullptr && (first == nullptr || survivors.contains(id)) ? last : first;
        const auto place = PlaceAt(history, run, id, time);
        if (model == nullptr || !place) continue;
        near.state.ids.push_back(id);
        near.state.names.push_back(model->Name());
        near.state.gm.push_back(model->M());
        near.radii.push_back(model->Radius());
        for (auto [to, v] : {std::pair(&near.state.positions, place->position),
                             std::pair(&near.state.velocities, place->velocity)})
            to->insert(to->end(), {v.x, v.y, v.z});
    }
    return {&run, EpochOf(run, near), false};
}
