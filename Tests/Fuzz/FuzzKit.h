// What the fuzz targets share. A target is a source with the function LLVMFuzzerTestOneInput, which
// takes whatever bytes it is given: nothing in them may end the program, and what a target claims
// of them must hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Storage/FileDescriptor.h"

class BMessage;
class ProgramResources;
class SimulationDocument;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

using Bytes = std::span<const std::byte>;

inline Bytes BytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const std::byte*>(data), size};
}
inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}
[[nodiscard]] std::vector<std::string_view> LinesOf(std::string_view text);

// Ends the program, with the claim, if it does not hold.
void Check(bool holds, const char* claim);

// The program's own, read once.
[[nodiscard]] const ProgramResources& Resources();

// A file that has a path, but lies in memory.
class MemoryFile {
public:
    explicit MemoryFile(Bytes contents);
    [[nodiscard]] std::string Path() const;

private:
    FileDescriptor descriptor_;
};

// A document that was read or edited can be stored, read again, and then is the same.
void CheckCanBeKept(SimulationDocument* document);

}  // namespace fuzz
