// What is installed with the program beside its own file: the guide and the examples, or those of
// the build tree that the program was started from. No state, any thread.
#pragma once

#include <string>
#include <vector>

#include "Interface Widgets/ExampleMenu.h"

// The page, or where it would be.
[[nodiscard]] std::string GuidePath();
// In the order of their files' names. What cannot be read is left out.
[[nodiscard]] std::vector<Example> InstalledExamples();
