// Where a picture is looked at from, as the command line says it: "30,45" or "30,45,5e11", degrees
// and metres. No state, any thread.
#pragma once

#include <optional>
#include <string_view>

#include "Run/Options.h"

// Nothing: that is no such place.
[[nodiscard]] std::optional<CameraChoice> ParseCamera(std::string_view text);
