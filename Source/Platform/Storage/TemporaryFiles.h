// The hidden files in which others are written until they are complete, ".orvek-XXXXXXXX.tmp".
// Their process holds a lock on each for as long as it works on it; so one that nobody has locked
// was left by a process that has ended. No state, any thread.
#pragma once

#include <string>
#include <string_view>

namespace TemporaryFiles {

// A name that hardly another file has.
[[nodiscard]] std::string NewName();
[[nodiscard]] bool IsName(std::string_view name);

// Makes such a file and locks it: its descriptor, or -1 with errno, EEXIST for a name in use.
[[nodiscard]] int Create(const char* path, unsigned mode);
// Locks a file that has no name yet.
void Lock(int descriptor);

// Removes those that processes which have ended have left in the folder; how many there were.
int RemoveLeftovers(const std::string& folder);

}  // namespace TemporaryFiles
