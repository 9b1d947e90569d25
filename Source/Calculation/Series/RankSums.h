// The sums of groups of tiles, where ranks have some groups each. Groups are added in a fixed tree:
// a rank adds up the whole branches that it has, all exchange these, and each completes the tree
// for some of the vectors. Owned by the forces.
#pragma once

#include <utility>
#include <vector>

#include "Calculation/Ranks.h"
#include "Calculation/Series/SeriesInstances.h"

class RankSums {
public:
    // `ranks` is not owned. `groups`: a power of two.
    RankSums(Ranks* ranks, int32 groups, int32 vectors);

    // The groups whose tiles this rank adds, and the vectors that it completes.
    [[nodiscard]] int32 BeginGroup() const { return BeginOf(groups_); }
    [[nodiscard]] int32 EndGroup() const { return EndOf(groups_); }
    [[nodiscard]] int32 BeginVector() const { return BeginOf(vectors_); }
    [[nodiscard]] int32 EndVector() const { return EndOf(vectors_); }

    // `sums` [group][vector][6][8]: of this rank's groups all vectors. Afterwards group 0 has the
    // sums of all groups, for the vectors of this rank. False where number 0 has `stopped`, and
    // all give up.
    [[nodiscard]] bool Add(double* sums, bool stopped);
    // Everybody gets everybody's orders k + 2 and k + 3.
    void ShareOrders(const SeriesArrays& arrays, int32 k);

private:
    // Group `to` gets group `from`.
    struct Sum {
        int32 to;
        int32 from;
    };
    static constexpr int64 kNumbers = 6 * kSlots;  // of a vector

    [[nodiscard]] int32 BeginOf(const RankParts& parts) const {
        return static_cast<int32>(parts[ranks_->Index()]);
    }
    [[nodiscard]] int32 EndOf(const RankParts& parts) const {
        return static_cast<int32>(parts[ranks_->Index() + 1]);
    }
    void SetBranches();
    [[nodiscard]] bool IsWithin(int32 rank, int32 begin, int32 end) const;
    void AddVectors(double* sums, const std::vector<Sum>& tree, int32 begin, int32 end) const;
    [[nodiscard]] double* RowsOf(double* sums, int32 group, int64 vector) const {
        return sums + (group * vectors_.back() + vector) * kNumbers;
    }

    Ranks* const ranks_;
    const RankParts groups_;
    const RankParts vectors_;
    std::vector<std::vector<int32>> branches_;  // of each rank: their first groups
    std::vector<Sum> ownSums_;
    std::vector<Sum> lastSums_;
    std::vector<double> sent_;
    std::vector<double> received_;
};
