// The names that a script gives to the numbers of its resources, and the header by which the
// program knows them. Used by one thread.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class ResourceNames {
public:
    // The names are the enumerators of this type; of none, unless it is set.
    void SetType(std::string type) { type_ = std::move(type); }
    void Add(std::string name, int32 number) { numbers_.emplace_back(std::move(name), number); }

    // `script`: what the header says that it was made from.
    [[nodiscard]] std::string Header(const std::string& script) const;

private:
    std::string type_;
    std::vector<std::pair<std::string, int32>> numbers_;  // in the order of the script
};
