// What the program says on its standard outputs, and the documents that it writes. No state but the
// options; used by the thread that owns the run.
#pragma once

#include <string>

#include "Simulation/Document/DocumentError.h"

class BMessage;
class ProgramResources;
struct Options;

class RunnerOutput {
public:
    static constexpr int kDone = 0;
    static constexpr int kCouldNot = 1;

    // Neither is owned.
    RunnerOutput(const Options& options, const ProgramResources& resources);

    // These two return an exit status.
    int PrintText(const std::string& path, const std::string& text) const;
    int Fail(const std::string& file, const std::string& reason) const;
    // Unless the user wants no notes.
    void Note(const std::string& text) const;
    static void Print(const std::string& text);
    // Says how many leftovers of other programs were removed.
    DocumentError WriteDocument(const std::string& path, BMessage&& record) const;

private:
    const Options& options_;
    const ProgramResources& resources_;
};
