// Whether a file is the one that a checkpoint tells of.
#pragma once

#include <string>
#include <string_view>

#include "Platform/Support/SupportDefs.h"

// The file begins with that header, and its first `size` bytes end with that row: such rows tell
// numbers to the last bit, and no other run has the same. 0, or the errno of what failed.
[[nodiscard]] int FindKeptRows(const std::string& path, std::string_view header, int64 size,
                               std::string_view lastRow, bool* areThere);
