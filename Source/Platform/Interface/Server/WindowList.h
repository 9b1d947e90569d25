// The program's running windows, in the order in which they began to run. Any thread; a window is
// taken out by its destructor, so that a pointer may be stale as soon as it is given out: BLooper's
// Lock refuses such a one.
#pragma once

#include "Platform/Support/SupportDefs.h"

class BWindow;

namespace WindowList {

void Add(BWindow* window);
void Remove(BWindow* window);
[[nodiscard]] int32 Count();
// Null if there is none.
[[nodiscard]] BWindow* At(int32 index);

}  // namespace WindowList
