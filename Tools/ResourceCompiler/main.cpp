// orvek-rc SCRIPT FILE: compiles a resource script into a resource file. Exit codes: 0 done, 1
// could not (the reason is on standard error), 2 wrong use.

#include <cstdio>

#include "Platform/Storage/AtomicFile.h"
#include "Tools/ResourceCompiler/RdefParser.h"
#include "Tools/ResourceCompiler/ResourceWriter.h"

namespace {

bool WriteFile(const char* path, const ResourceWriter::Bytes& bytes) {
    AtomicFile file;
    return file.Open(path) == B_OK && file.Write(bytes.data(), bytes.size()) == B_OK &&
           file.Commit() == B_OK;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: orvek-rc SCRIPT FILE\n", stderr);
        return 2;
    }
    ResourceWriter writer;
    RdefParser parser(&writer);
    if (!parser.Parse(argv[1])) {
        std::fprintf(stderr, "%s\n", parser.Error().c_str());
        return 1;
    }
    if (!WriteFile(argv[2], writer.File())) {
        std::fprintf(stderr, "cannot write \"%s\"\n", argv[2]);
        return 1;
    }
    return 0;
}
