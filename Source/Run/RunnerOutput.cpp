#include "Run/RunnerOutput.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "Platform/Application/BMessage.h"
#include "Resources/Runner.h"
#include "Run/Options.h"
#include "Run/OutputFile.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Document/TextTemplate.h"

RunnerOutput::RunnerOutput(const Options& options, const ProgramResources& resources)
    : options_(options), resources_(resources) {}

int RunnerOutput::PrintText(const std::string& path, const std::string& text) const {
    OutputFile out;
    int error = out.Open(path);
    if (error == 0) {
        out.Write(text);
        error = out.Close();
    }
    return error == 0 ? kDone : Fail(path, std::strerror(error));
}

int RunnerOutput::Fail(const std::string& file, const std::string& reason) const {
    Print(FillIn(resources_.InterfaceLabel(kTextFailure), {file, reason}));
    return kCouldNot;
}

void RunnerOutput::Note(const std::string& text) const {
    if (!options_.quiet) Print(text);
}

void RunnerOutput::Print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
}

DocumentError RunnerOutput::WriteDocument(const std::string& path, BMessage&& record) const {
    int leftovers = 0;
    DocumentError error = SimulationFile::Write(path, std::move(record), &leftovers);
    if (leftovers > 0)
        Note(FillIn(resources_.InterfaceLabel(kTextLeftovers), {std::to_string(leftovers), path}));
    return error;
}
