// Where file panels begin. A program's own folders are no place for documents: a panel that would
// begin in a build tree, among the system's files or beside the program begins in the user's
// documents instead.
#pragma once

#include <string>

struct entry_ref;

// In a build tree, among the system's files, or where the program itself is. Looks at the disk; any
// thread.
[[nodiscard]] bool IsProgramsFolder(const std::string& path);
// That folder, or the user's documents in its place.
[[nodiscard]] entry_ref PanelFolder(const entry_ref& folder);
