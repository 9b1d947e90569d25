// Reads a stored resource block. Nothing in the bytes is trusted: every offset, size and count is
// checked before it is used, and the resources together are never larger than the block. A static
// function without state, any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Platform/Support/Errors.h"

class ResourceBlock {
public:
    struct Resource {
        type_code type = 0;
        int32 id = 0;
        std::string name;
        std::size_t offset = 0;  // in the block
        std::size_t size = 0;
    };

    // The resources in the order of the block's table; numbers in their data are turned round where
    // they lie if the block has the other byte order. B_BAD_DATA: not a block, or a damaged one.
    [[nodiscard]] static status_t Read(std::vector<std::byte>* block,
                                       std::vector<Resource>* resources);
};
