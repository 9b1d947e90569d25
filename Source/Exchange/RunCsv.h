// What is kept of runs as comma-separated values: of each body in turn, the samples of its path,
// between which cubics tell the rest. SI units, exact to the bit. No state.
#pragma once

#include <functional>
#include <string_view>

class EpochPortal;
class RunHistory;

// The kept runs on the branch in focus, in the order in which they were made. `write` takes the
// text in pieces. False: there are none. Takes the portal's read lock, and not while it writes.
bool WriteRunsAsCsv(EpochPortal* portal, const RunHistory& history,
                    const std::function<void(std::string_view)>& write);
