// The program without a window, from its arguments to its exit status.
#pragma once

#include <string_view>
#include <vector>

class ProgramResources;
class Ranks;

// `arguments`: those behind the program's name. `version`: of the program. Main thread, before any
// other thread is there. `ranks` (not owned): those that share the work; null: none.
[[nodiscard]] int RunProgram(const std::vector<std::string_view>& arguments,
                             const ProgramResources& resources, std::string_view version,
                             Ranks* ranks = nullptr);
