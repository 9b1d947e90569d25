// What archives of views, menus and their items have in common.
#pragma once

#include "Platform/Support/BArchivable.h"

// Adds the name of the object's own class as the first item of string "class", unless one is there.
[[nodiscard]] status_t AddClassName(const BArchivable& object, BMessage* into);
// Adds the archive of another object, with all that it holds.
[[nodiscard]] status_t AddArchive(const BArchivable& object, const char* name, BMessage* into);
