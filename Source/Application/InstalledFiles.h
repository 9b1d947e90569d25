// What is installed with the program beside its own file: the guide, the examples and other
// languages, or those of the build tree that the program was started from. No state, any thread.
#pragma once

#include <string>
#include <vector>

#include "Interface Widgets/ExampleMenu.h"

// The page, or where it would be.
[[nodiscard]] std::string GuidePath();
// The texts of a language ("de", "de_AT"), or where they would be.
[[nodiscard]] std::string TranslationPath(const std::string& language);
// In the order of their files' names. What cannot be read is left out.
[[nodiscard]] std::vector<Example> InstalledExamples();
