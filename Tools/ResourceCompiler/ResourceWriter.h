// Collects resources and stores them as a resource file. Used by one thread.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class ResourceWriter {
public:
    using Bytes = std::vector<std::byte>;

    // An empty name is none. False if there is a resource of this type and number already.
    [[nodiscard]] bool Add(type_code type, int32 id, const std::string& name, Bytes data);

    // The little-endian form, or the big-endian one. The data is stored as it was given; the caller
    // sees to the byte order of numbers in it.
    enum class ByteOrder { kLittleEndian, kBigEndian };
    [[nodiscard]] Bytes File(ByteOrder order = ByteOrder::kLittleEndian) const;

private:
    struct Resource {
        type_code type;
        int32 id;
        std::string name;
        Bytes data;
    };

    [[nodiscard]] Bytes Table(bool swapped) const;

    std::vector<Resource> resources_;
    std::set<std::pair<type_code, int32>> taken_;
};
