// The program's icons, from its own resources. No state, any thread.
#pragma once

#include "Platform/Interface/Canvas/BBitmap.h"

namespace ProgramIcons {

// 16 and 32 pixels high and wide; empty when the program carries no resources.
[[nodiscard]] BBitmap Mini();
[[nodiscard]] BBitmap Large();

}  // namespace ProgramIcons
