// Brings the bodies of files into a document before a run: each file whole or not at all. Without a
// document they take the place of the bodies of the new simulation. Owned by nobody: one call on
// the main thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Exchange/BodyImport.h"

class RunnerOutput;
struct Options;

// "398600.4 km3/s2", "1 Me" or "0", for bodies whose files tell no mass.
[[nodiscard]] bool ReadMissingGM(std::string_view text, const ProgramResources& resources,
                                 Options* options);
// One of them. `replaces`: the bodies that are there go.
[[nodiscard]] std::optional<ImportFault> ImportFile(const std::string& path, const Options& options,
                                                    bool replaces, BodyImport* import,
                                                    const ProgramResources& resources,
                                                    const RunnerOutput& output);
// The exit status; what is wrong has been told.
[[nodiscard]] int ImportFiles(const Options& options, SimulationDocument* document, RunControl* run,
                              const ProgramResources& resources, const RunnerOutput& output);
// The bodies as they are, for other programs and for ImportFiles; "-" is standard output.
[[nodiscard]] int ExportBodies(const Options& options, SimulationDocument* document,
                               const RunnerOutput& output);
