// What a file has besides its contents and its name. No state, any thread. All of it is best
// effort: a file system may know only some of it, and the system may not let this user keep it.
#pragma once

#include <string>

// Gives the open file the owner, the group, the access list, the mode and the attributes of the
// file of that path. Where owner or list cannot be kept nobody gets more access than others had.
void TakeOverTraits(const std::string& from, int to);

// The attributes of users and desktops, from one open file to another.
void CopyAttributes(int from, int to);
