#include "Run/DocumentAction.h"

#include <algorithm>

#include "Resources/DocumentTexts.h"
#include "Resources/Runner.h"
#include "Run/EditText.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/TextTemplate.h"

struct DocumentAction::Action {
    std::string_view name;
    bool takesArgument;
    Wrong (DocumentAction::*perform)(Argument);
};

const DocumentAction::Action DocumentAction::kActions[] = {
    {"new-body", false, &DocumentAction::NewBody},
    {"delete", true, &DocumentAction::Delete},
    {"group", true, &DocumentAction::Group},
    {"dissolve", true, &DocumentAction::Dissolve},
    {"center-of-mass", false, &DocumentAction::CenterOfMass},
    {"log-epoch", false, &DocumentAction::LogEpoch},
    {"focus-epoch", true, &DocumentAction::FocusEpoch},
    {"delete-epoch", true, &DocumentAction::DeleteEpoch},
    {"undo", false, &DocumentAction::Undo},
    {"redo", false, &DocumentAction::Redo},
};

DocumentAction::DocumentAction(SimulationDocument* document, SimulationController* controller,
                               const ProgramResources* resources)
    : document_(document), controller_(controller), resources_(resources) {}

bool DocumentAction::IsAction(std::string_view name) {
    return std::ranges::find(kActions, name, &Action::name) != std::end(kActions);
}

std::optional<std::string> DocumentAction::Do(std::string_view name, std::string_view argument) {
    const Action* const action = std::ranges::find(kActions, name, &Action::name);
    if (action->takesArgument == argument.empty())
        return Problem(action->takesArgument ? kTextEditNoValue : kTextEditUnwanted, argument);
    return (this->*action->perform)(argument);
}

DocumentAction::Wrong DocumentAction::Problem(int32 text, std::string_view what) const {
    return FillIn(resources_->InterfaceLabel(text), {what});
}

DocumentAction::Wrong DocumentAction::Done(bool done) const {
    return done ? std::nullopt : Problem(kTextEditNothingToDo);
}

DocumentAction::Wrong DocumentAction::NewBody(Argument) {
    controller_->CreateBody();
    return std::nullopt;
}

DocumentAction::Wrong DocumentAction::Delete(Argument system) {
    const std::optional<int64> id = FindSystem(document_, system);
    if (!id) return Problem(kTextEditNoSystem, system);
    controller_->DeleteBody(*id);
    return std::nullopt;
}

DocumentAction::Wrong DocumentAction::Group(Argument nameAndMembers) {
    std::string_view rest = nameAndMembers;
    const std::string name(TakeUpTo(':', &rest));
    if (rest.empty()) return Problem(kTextEditNoMembers, nameAndMembers);
    std::vector<int64> members;
    while (!rest.empty()) {
        const std::string_view member = TakeUpTo(',', &rest);
        const std::optional<int64> id = FindSystem(document_, member);
        if (!id) return Problem(kTextEditNoSystem, member);
        members.push_back(*id);
    }
    using Grouping = SimulationController::Grouping;
    const Grouping result = controller_->GroupSystems(members, name);
    if (result == Grouping::kTooDeep) return Problem(kTextGroupsTooDeep);
    return Done(result == Grouping::kDone);
}

DocumentAction::Wrong DocumentAction::Dissolve(Argument system) {
    const std::optional<int64> id = FindSystem(document_, system);
    if (!id) return Problem(kTextEditNoSystem, system);
    return Done(controller_->DissolveSystem(*id));
}

DocumentAction::Wrong DocumentAction::CenterOfMass(Argument) {
    return Done(controller_->ToCenterOfMass());
}

DocumentAction::Wrong DocumentAction::LogEpoch(Argument) {
    controller_->DupCurrentEpoch();
    return std::nullopt;
}

DocumentAction::Wrong DocumentAction::FocusEpoch(Argument epoch) {
    AbEpoch* const found = FindEpoch(document_, epoch);
    if (!found) return Problem(kTextEditNoEpoch, epoch);
    controller_->EditEpoch(found);
    return std::nullopt;
}

DocumentAction::Wrong DocumentAction::DeleteEpoch(Argument epoch) {
    AbEpoch* const found = FindEpoch(document_, epoch);
    if (!found) return Problem(kTextEditNoEpoch, epoch);
    if (!controller_->DeleteEpoch(found)) return Problem(kTextEpochStays);
    return std::nullopt;
}

DocumentAction::Wrong DocumentAction::Undo(Argument) {
    return Done(controller_->Undo());
}

DocumentAction::Wrong DocumentAction::Redo(Argument) {
    return Done(controller_->Redo());
}
