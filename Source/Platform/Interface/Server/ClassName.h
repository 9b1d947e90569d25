// The class names in archives.
#pragma once

#include "Platform/Support/BArchivable.h"

// Adds the name of the object's own class as the first item of string "class", unless one is there.
[[nodiscard]] status_t AddClassName(const BArchivable& object, BMessage* into);
