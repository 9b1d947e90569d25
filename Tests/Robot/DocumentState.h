// All that the history of a document restores, as text: equal texts mean equal documents. What
// commands do not speak of is left out: the calculator's state, which an epoch takes when it is
// left, and names of epochs, since one that was renamed keeps a name of its own.
#pragma once

#include <string>

class EpochPortal;

// Takes the read lock.
[[nodiscard]] std::string DocumentState(EpochPortal* portal);
// The first line in which they differ, as both have it; empty when none does.
[[nodiscard]] std::string FirstDifference(const std::string& one, const std::string& other);
