// What --until asks for, as text: a time of the simulation ("12 yr"), "merger", "closest=BODY,
// BODY", "escape=BODY, DISTANCE", or "x=BODY" ("y=", "z=") for the plane across that axis through
// the origin, "x=BODY, BODY" for the one through the second body. For the thread that has the
// document to itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Simulation/Document/RunTarget.h"

class ProgramResources;
class SimulationDocument;

// Nothing for any other text, and for bodies that the focus epoch does not have.
[[nodiscard]] std::optional<RunTarget> ParseUntil(std::string_view text,
                                                  SimulationDocument* document,
                                                  const ProgramResources& resources);
// Why such a text, for which there is nothing or whose time is over, is refused.
[[nodiscard]] std::string UntilRefusal(std::string_view text, SimulationDocument* document,
                                       const ProgramResources& resources);
