// The language of the windows: that of the desktop where there is a translation, else English. What
// documents, other files and orvek-run say is the same in every language. No state; main thread,
// before others run.
#pragma once

#include <string>
#include <vector>

class ProgramResources;

namespace Language {

// The languages that suit what LC_ALL, LC_MESSAGES and LANG say (the first that is there counts),
// best first: "de_AT.UTF-8" is "de_AT", then "de". None for the program's own.
[[nodiscard]] std::vector<std::string> Wanted();

// Puts the best translation there is in place of the texts. The language; empty for English.
std::string Translate(ProgramResources* resources);

}  // namespace Language
