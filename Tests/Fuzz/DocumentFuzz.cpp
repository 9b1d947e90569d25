// Opening whole documents.
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/SavedHistory.h"
#include "Tests/Fuzz/FuzzKit.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static SimulationDocument document(nullptr);
    const fuzz::MemoryFile file(fuzz::BytesOf(data, size));
    BMessage record;
    DocumentError error = SimulationFile::Read(file.Path(), &record);
    if (!error.Failed()) error = document.Load(record);
    static RunHistory history(document.Portal(), document.GetCalculator());
    if (!error.Failed()) SavedHistory::Read(document.History(), document.Portal(), &history);
    if (!error.Failed())
        fuzz::CheckCanBeKept(&document);
    else
        fuzz::Check(!error.Reason(fuzz::Resources()).empty(), "a refusal has a reason");
    return 0;
}
