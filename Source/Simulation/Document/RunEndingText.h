// What a user is told about a run that has ended by itself. No state; the caller holds no lock of
// the document.
#pragma once

#include <string>

class EpochPortal;
class ProgramResources;
struct RunEnding;

// Names and units are those of the focus epoch, in which the run went.
[[nodiscard]] std::string RunEndingText(const RunEnding& ending, EpochPortal* portal,
                                        const ProgramResources& resources);
