// The edits of the command line that are no assignment to a field: "new-body", "group=NAME: A, B",
// "undo" and the like, by the same operations as those of the menus. Owned by the runner; used on
// its thread while the simulation is paused.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Simulation/Document/SimulationController.h"

class ProgramResources;
class SimulationDocument;

class DocumentAction {
public:
    // None is owned.
    DocumentAction(SimulationDocument* document, SimulationController* controller,
                   const ProgramResources* resources);

    // True if the edit begins with the name of an action.
    [[nodiscard]] static bool IsAction(std::string_view name);
    // Does it. The answer is empty, or says what cannot be done; then nothing was changed.
    [[nodiscard]] std::optional<std::string> Do(std::string_view name, std::string_view argument);

private:
    struct Action;
    static const Action kActions[];

    // What is wrong, if anything is.
    using Wrong = std::optional<std::string>;
    using Argument = std::string_view;

    Wrong NewBody(Argument);
    Wrong Delete(Argument system);
    Wrong Group(Argument nameAndMembers);
    Wrong Dissolve(Argument system);
    Wrong CenterOfMass(Argument);
    Wrong LogEpoch(Argument);
    Wrong FocusEpoch(Argument epoch);
    Wrong DeleteEpoch(Argument epoch);
    Wrong Undo(Argument);
    Wrong Redo(Argument);

    [[nodiscard]] Wrong Problem(int32 text, std::string_view what = {}) const;
    // Refuses when the operation found nothing to do.
    [[nodiscard]] Wrong Done(bool done) const;

    SimulationDocument* const document_;
    SimulationController* const controller_;
    const ProgramResources* const resources_;
};
