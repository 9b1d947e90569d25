// Adds what a text describes to the epoch in focus, as one undoable step or not at all. Owned by
// what owns the document and used on its thread, with no lock of the document held.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Support/SupportDefs.h"
#include "Resources/Exchange.h"

class Epoch;
class ExampleModel;
class ProgramResources;
class RunControl;
class SimulationDocument;
struct ExampleText;

// Why something is not taken.
struct ImportFault {
    int line = 0;  // 0: of none
    std::string reason;

    // "line 3: reason".
    [[nodiscard]] std::string Text(const ProgramResources& resources) const;
};

class BodyImport {
public:
    static constexpr std::size_t kMaxSystems = 100'000;

    // None is owned.
    BodyImport(SimulationDocument* document, RunControl* run, const ProgramResources* resources)
        : document_(document), run_(run), resources_(resources) {}

    // `name`: of the step. `replaces`: the bodies that are there go. A run is paused first.
    std::optional<ImportFault> Add(const ExampleText& text, ExchangeText name,
                                   bool replaces = false);

private:
    [[nodiscard]] std::optional<ImportFault> FindObstacle(const ExampleText& text) const;
    // Two bodies at one place have no force between them. Under the read lock.
    [[nodiscard]] std::optional<ImportFault> FindCoincidence(const Epoch& added,
                                                             const ExampleModel& model,
                                                             bool staysBesideOthers) const;
    [[nodiscard]] ImportFault Fault(int line, int32 text,
                                    std::initializer_list<std::string_view> values = {}) const;

    SimulationDocument* const document_;
    RunControl* const run_;
    const ProgramResources* const resources_;
};
