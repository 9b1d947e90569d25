#include "Calculation/PassedPairs.h"

#include "Model/Systems/Body.h"
#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kField = "Passed";

}  // namespace

void PassedPairs::SetBodies(const std::vector<Body*>& bodies) {
    for (const CollidingPair& pair : pairs_)
        given_.insert(given_.end(), {ids_[static_cast<std::size_t>(pair.later)],
                                     ids_[static_cast<std::size_t>(pair.earlier)]});
    pairs_.clear();
    ids_.clear();
    for (const Body* const body : bodies)
        ids_.push_back(body->ID());
    const auto indexOf = [this](int64 id) {
        return static_cast<int32>(std::find(ids_.begin(), ids_.end(), id) - ids_.begin());
    };
    const auto count = static_cast<int32>(ids_.size());
    for (std::size_t i = 0; i + 1 < given_.size(); i += 2) {
        const int32 one = indexOf(given_[i]);
        const int32 other = indexOf(given_[i + 1]);
        const CollidingPair pair{std::max(one, other), std::min(one, other)};
        if (pair.later < count && one != other && !Contain(pair)) pairs_.push_back(pair);
    }
    given_.clear();
}

void PassedPairs::Add(const std::vector<CollidingPair>& pairs) {
    for (const CollidingPair& pair : pairs)
        if (!Contain(pair)) pairs_.push_back(pair);
}

void PassedPairs::KeepTouching(std::vector<CollidingPair>* touching) {
    std::erase_if(pairs_, [&](const CollidingPair& pair) {
        return std::find(touching->begin(), touching->end(), pair) == touching->end();
    });
    std::erase_if(*touching, [this](const CollidingPair& pair) { return Contain(pair); });
}

status_t PassedPairs::Archive(BMessage* into) const {
    for (const CollidingPair& pair : pairs_)
        for (const int32 body : {pair.later, pair.earlier})
            if (const status_t status =
                    into->AddInt64(kField, ids_[static_cast<std::size_t>(body)]);
                status != B_OK)
                return status;
    return B_OK;
}

void PassedPairs::Regenerate(const BMessage& archive) {
    pairs_.clear();
    given_.clear();
    int64 id = 0;
    for (int32 at = 0; archive.FindInt64(kField, at, &id) == B_OK; at++)
        given_.push_back(id);
}

void PassedPairs::DescribeFields(FieldDescriptions* into) {
    DescribeField(into, kField, B_INT64_TYPE, "0, 2, ...", "none",
                  "pairs of bodies that are passing through each other, whose contact has been "
                  "reported: the identifiers of the later and the earlier body of each");
}
