// orvek-rc SCRIPT FILE: compiles a resource script into a resource file.
// orvek-rc --names SCRIPT HEADER: writes the names of its numbers as a C++ header.
// Exit codes: 0 done, 1 could not (the reason is on standard error), 2 wrong use.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "Platform/Storage/AtomicFile.h"
#include "Tools/ResourceCompiler/RdefParser.h"
#include "Tools/ResourceCompiler/ResourceWriter.h"

namespace {

bool WriteFile(const char* path, const void* data, std::size_t size) {
    AtomicFile file;
    return file.Open(path) == B_OK && file.Write(data, size) == B_OK && file.Commit() == B_OK;
}

// A header that is as it was is left alone: nothing that includes it is compiled again.
bool WriteHeader(const char* path, const std::string& text) {
    std::ifstream file(path, std::ios::binary);
    const std::string there{std::istreambuf_iterator<char>(file), {}};
    return (file.is_open() && there == text) || WriteFile(path, text.data(), text.size());
}

}  // namespace

int main(int argc, char** argv) {
    const bool names = argc == 4 && std::string_view(argv[1]) == "--names";
    if (argc != 3 && !names) {
        std::fputs("usage: orvek-rc SCRIPT FILE\n       orvek-rc --names SCRIPT HEADER\n", stderr);
        return 2;
    }
    const char* const script = argv[argc - 2];
    const char* const output = argv[argc - 1];
    ResourceWriter writer;
    RdefParser parser(&writer);
    if (!parser.Parse(script)) {
        std::fprintf(stderr, "%s\n", parser.Error().c_str());
        return 1;
    }
    const ResourceWriter::Bytes bytes = writer.File();
    const std::string from = std::filesystem::path(script).filename().string();
    if (!(names ? WriteHeader(output, parser.Names().Header(from))
                : WriteFile(output, bytes.data(), bytes.size()))) {
        std::fprintf(stderr, "cannot write \"%s\"\n", output);
        return 1;
    }
    return 0;
}
