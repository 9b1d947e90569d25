// The resources of a file: blocks of data known by type and number, some with a name. Read once by
// SetTo, then read-only, when any thread may call. The object owns what its functions point to.
//
// Reads resource files of both byte orders, and the one that a program file carries as a section.
// Nothing in the file is trusted: every offset, size and count is checked before it is used.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Storage/ResourceBlock.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/TypeConstants.h"

class BResources {
public:
    // The section of a program file that holds its resource file.
    static constexpr const char* kSectionName = ".orvek_rsrc";

    // B_IO_ERROR: the file holds no resources; B_BAD_DATA: they are damaged; or why it could not be
    // read. On failure there are no resources. An empty file is one without resources.
    [[nodiscard]] status_t SetTo(const char* path);
    // A whole resource file in memory.
    [[nodiscard]] status_t SetTo(std::vector<std::byte> file);
    // The running program's own resources.
    [[nodiscard]] status_t SetToProgram();

    // The data, at any alignment, numbers in this machine's byte order; null when there is none
    // such.
    [[nodiscard]] const void* LoadResource(type_code type, int32 id, std::size_t* size) const;
    // The first with this name.
    [[nodiscard]] const void* LoadResource(type_code type, const char* name,
                                           std::size_t* size) const;
    // A text, without its terminating 0.
    [[nodiscard]] std::optional<std::string> LoadString(int32 id) const;

    // The index-th resource in the file's order; false when there are not so many. The name is
    // empty for a nameless one; out pointers may be null.
    bool GetResourceInfo(int32 index, type_code* type, int32* id, const char** name,
                         std::size_t* size) const;
    [[nodiscard]] int32 CountResources() const { return static_cast<int32>(all_.size()); }

private:
    status_t SetToBlock(std::vector<std::byte> block);
    const void* DataOf(std::size_t index, std::size_t* size) const;

    std::vector<std::byte> block_;
    std::vector<ResourceBlock::Resource> all_;
    std::map<std::pair<type_code, int32>, std::size_t> byId_;
};
