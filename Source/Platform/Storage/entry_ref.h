// The place of a file: the directory that holds it, by identity, and its name there. A plain value.
// The directory's path comes from a table of this process that is filled whenever a reference is
// made from a path, so a reference leads to a file only in the process that made it; any thread.
#pragma once

#include <string>

#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

struct entry_ref {
    int64 device = -1;
    int64 directory = -1;
    std::string name;

    bool operator==(const entry_ref&) const = default;
};

// The directory must exist, the entry need not. A link at the end of the path is not followed; the
// root directory is "." in itself. B_BAD_VALUE: an empty path.
[[nodiscard]] status_t get_ref_for_path(const char* path, entry_ref* ref);
// B_ENTRY_NOT_FOUND: the directory was never seen, or is no longer where it was.
[[nodiscard]] status_t get_path_for_ref(const entry_ref& ref, std::string* path);
