// The epoch tree of a document as text, one line an epoch in visiting order. No state; the caller
// holds the portal's lock or has the document to itself.
#pragma once

#include <string>

class ProgramResources;
class SimulationDocument;

// Name (indented by its depth), time in the epoch's unit, state and number of bodies; the epoch in
// focus is marked.
[[nodiscard]] std::string ListEpochs(SimulationDocument* document,
                                     const ProgramResources& resources);
