// Pieces of the command line, and what their names stand for. No state.
#pragma once

#include <optional>
#include <string_view>

#include "Platform/Support/SupportDefs.h"

class AbEpoch;
class SimulationDocument;

[[nodiscard]] std::string_view Trimmed(std::string_view text);
// The trimmed text up to the separator, or all of it; the given text keeps what follows.
[[nodiscard]] std::string_view TakeUpTo(char separator, std::string_view* text);

// "10min", "2h", "90 s", of real time: seconds unless it says otherwise.
[[nodiscard]] std::optional<double> ParseRealTime(std::string_view text);

// "merge", "stop" or "pass", as EpochLimits.h has them.
[[nodiscard]] std::optional<int32> ContactFromName(std::string_view name);

// The first system of the focus epoch, by identifier, that has the name. Both for the thread that
// has the document to itself.
[[nodiscard]] std::optional<int64> FindSystem(SimulationDocument* document, std::string_view name);
// The epoch with that number in visiting order, from 0, or the first of that name; null for none.
[[nodiscard]] AbEpoch* FindEpoch(SimulationDocument* document, std::string_view numberOrName);
