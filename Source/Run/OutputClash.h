// Whether what is to be written would take the place of something else. No state.
#pragma once

#include <optional>
#include <string>

struct Options;

// The output that must not be written because it is the document or another output, if any. The
// reports are written while the document may still be needed, the document at the end and whole.
[[nodiscard]] std::optional<std::string> FindClashingOutput(const Options& options);
