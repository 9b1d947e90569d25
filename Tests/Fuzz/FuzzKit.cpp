#include "Tests/Fuzz/FuzzKit.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "Platform/Application/BMessage.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/SimulationDocument.h"

namespace fuzz {

std::vector<std::string_view> LinesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n')) {
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    lines.push_back(text);
    return lines;
}

void Check(bool holds, const char* claim) {
    if (holds) return;
    std::fprintf(stderr, "This does not hold: %s.\n", claim);
    std::abort();
}

const ProgramResources& Resources() {
    static const ProgramResources resources;
    return resources;
}

MemoryFile::MemoryFile(Bytes contents) : descriptor_(memfd_create("fuzz", MFD_CLOEXEC)) {
    const ssize_t written = write(descriptor_.Get(), contents.data(), contents.size());
    Check(written == static_cast<ssize_t>(contents.size()), "a file can be made in memory");
}

std::string MemoryFile::Path() const {
    return "/proc/self/fd/" + std::to_string(descriptor_.Get());
}

void CheckCanBeKept(SimulationDocument* document) {
    static SimulationDocument other(nullptr);
    for (const bool allEpochs : {true, false}) {
        BMessage stored;
        Check(!document->Store(&stored, allEpochs).Failed(), "a document can be stored");
        std::vector<std::byte> bytes;
        Check(stored.Flatten(&bytes) == B_OK, "a stored document can be written");
        BMessage read;
        Check(read.Unflatten(bytes.data(), bytes.size()) == B_OK, "a written document can be read");
        Check(!other.Load(read).Failed(), "a written document can be loaded");
        BMessage again;
        Check(!other.Store(&again, true).Failed(), "a document can be stored again");
        // A focus epoch alone stands at another place than it did in its tree.
        if (allEpochs) Check(again == stored, "a document that was read again is the same");
    }
}

}  // namespace fuzz
