#include "Exchange/BodyImport.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

#include "Exchange/ExampleModel.h"
#include "Model/Commands/CommandFactory.h"
#include "Model/Commands/DeleteSystemCommand.h"
#include "Model/Commands/MacroCommand.h"
#include "Model/Commands/NewSystemCommand.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/NewIdentifiers.h"
#include "Resources/Exchange.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

std::size_t CountSystems(const std::vector<ExampleSystem>& systems) {
    std::size_t count = 0;
    for (const ExampleSystem& system : systems)
        count += static_cast<std::size_t>(std::max(system.count, int32{1})) +
                 CountSystems(system.members);
    return count;
}

void GatherBodies(const MassSystem* system, std::vector<const MassSystem*>* into) {
    if (dynamic_cast<const Body*>(system) != nullptr) into->push_back(system);
    for (int32 i = 0; i < system->CountChildren(); i++)
        GatherBodies(system->ChildAt(i), into);
}

auto PlaceOf(const MassSystem* body) {
    const ThreeVector at = body->Position();
    return std::tuple(at.x, at.y, at.z);
}

}  // namespace

std::string ImportFault::Text(const ProgramResources& resources) const {
    if (line == 0) return reason;
    return FillIn(resources.InterfaceLabel(kTextAtLine), {std::to_string(line), reason});
}

std::optional<ImportFault> BodyImport::Add(const ExampleText& text, ExchangeText name,
                                           bool replaces) {
    if (auto obstacle = FindObstacle(text)) return obstacle;
    run_->PauseForUser();
    EpochPortal* const portal = document_->Portal();
    portal->CommitChanges();
    if (!portal->PrepareForEdit()) return Fault(0, kTextNoEpochInFocus);

    ExampleModel model(*resources_);
    std::unique_ptr<LCommand> command;
    {
        const ReadGuard guard(portal);
        NewIdentifiers identifiers({document_->Root()});
        model.SetIdentifiers([&identifiers] { return identifiers.Next(); });
        const std::unique_ptr<Epoch> epoch = model.Build(text);
        if (epoch == nullptr) return ImportFault{model.Line(), model.Reason()};
        if (auto coincidence = FindCoincidence(*epoch, model, !replaces)) return coincidence;
        const MassSystem* const parent = portal->FocusEpoch()->RootSystem();
        if (parent == nullptr) return Fault(0, kTextNoEpochInFocus);
        std::vector<MassSystem*> systems;
        MassSystem* const root = epoch->RootSystem();
        systems.reserve(static_cast<std::size_t>(root->CountChildren()));
        for (int32 i = 0; i < root->CountChildren(); i++)
            systems.push_back(root->ChildAt(i));
        for (std::size_t i = systems.size(); i-- > 0;)
            root->RemoveChild(systems[i]);
        auto steps = std::make_unique<MacroCommand>();
        for (int32 i = 0; replaces && i < parent->CountChildren(); i++)
            steps->AddCommand(std::make_unique<DeleteSystemCommand>(
                portal, parent->ChildAt(i)->ID(), kNoSystemID));
        steps->AddCommand(
            std::make_unique<NewSystemCommand>(portal, std::move(systems), parent->ID()));
        command = std::move(steps);
    }
    if (ExecuteFiled(portal, Named(static_cast<CommandName>(name), std::move(command))))
        return std::nullopt;
    return Fault(0, kTextNoEpochInFocus);
}

std::optional<ImportFault> BodyImport::FindObstacle(const ExampleText& text) const {
    if (text.systems.empty()) return Fault(0, kTextNothingToImport);
    if (CountSystems(text.systems) > kMaxSystems)
        return Fault(0, kTextTooManyBodies, {std::to_string(kMaxSystems)});
    return std::nullopt;
}

std::optional<ImportFault> BodyImport::FindCoincidence(const Epoch& added,
                                                       const ExampleModel& model,
                                                       bool staysBesideOthers) const {
    std::vector<const MassSystem*> bodies;
    GatherBodies(added.RootSystem(), &bodies);
    for (const MassSystem* body : bodies)
        if (!IsFinite(body->Position()) || !IsFinite(body->Velocity()) ||
            !std::isfinite(body->M()) || !std::isfinite(body->Radius()))
            return Fault(model.LineOf(body->ID()), kTextImportOutOfRange);
    if (staysBesideOthers)
        for (const Body* body : document_->Portal()->BodiesInMassOrder())
            bodies.push_back(body);
    std::ranges::stable_sort(bodies, {}, PlaceOf);
    std::optional<ImportFault> first;
    for (std::size_t i = 1; i < bodies.size(); i++) {
        if (PlaceOf(bodies[i - 1]) != PlaceOf(bodies[i])) continue;
        // Of two at one place those that are added come first; what was there before may stay so.
        const int line = model.LineOf(bodies[i - 1]->ID());
        if (line != 0 && (!first || line < first->line))
            first = Fault(line, kTextSamePlace, {bodies[i - 1]->Name(), bodies[i]->Name()});
    }
    return first;
}

ImportFault BodyImport::Fault(int line, int32 text,
                              std::initializer_list<std::string_view> values) const {
    return {line, FillIn(resources_->InterfaceLabel(text), values)};
}
