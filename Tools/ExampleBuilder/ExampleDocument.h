// Writes an example as a document of the program. No state, any thread.
#pragma once

#include <string>

#include "Exchange/ExampleModel.h"
#include "Simulation/Document/DocumentError.h"

// The document is read as the program reads it before it is
// written: an example that could not be opened is not built.
[[nodiscard]] DocumentError WriteExample(const std::string& path, const ExampleText& text,
                                         const Epoch& epoch, const ChosenSystems& chosen);
