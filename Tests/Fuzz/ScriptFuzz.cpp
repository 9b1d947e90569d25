// Compiling resource scripts.
#include "Platform/Storage/BResources.h"
#include "Tests/Fuzz/FuzzKit.h"
#include "Tools/ResourceCompiler/RdefParser.h"
#include "Tools/ResourceCompiler/ResourceWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFile script(fuzz::BytesOf(data, size));
    ResourceWriter writer;
    RdefParser parser(&writer);
    if (!parser.Parse(script.Path())) {
        fuzz::Check(!parser.Error().empty(), "a fault is told");
        return 0;
    }
    for (const auto order :
         {ResourceWriter::ByteOrder::kLittleEndian, ResourceWriter::ByteOrder::kBigEndian}) {
        BResources resources;
        fuzz::Check(resources.SetTo(writer.File(order)) == B_OK, "what was compiled can be read");
    }
    return 0;
}
