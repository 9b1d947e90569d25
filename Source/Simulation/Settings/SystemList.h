// The mass systems of an epoch as a list that a user chooses from, and which of them is in focus. A
// plain value; copied from the model under its read lock.
#pragma once

#include <string>
#include <vector>

#include "Model/Systems/MassSystem.h"

class EpochPortal;

struct SystemList {
    struct Row {
        int64 id;
        std::string name;
        int32 level;  // in how many groups it is
        bool operator==(const Row&) const = default;
    };
    // The system in focus, as far as entries depend on it.
    struct Focus {
        int64 id = kNoSystemID;
        int64 referent = kOriginID;
        bool isGroup = false;
        bool operator==(const Focus&) const = default;
    };

    // A group, then its members; without the root.
    std::vector<Row> rows;

    [[nodiscard]] bool Has(int64 id) const;
    bool operator==(const SystemList&) const = default;
};

// Both: with the portal's read lock.
[[nodiscard]] SystemList ReadSystemList(const EpochPortal& portal);
[[nodiscard]] SystemList::Focus ReadFocus(const EpochPortal& portal);
