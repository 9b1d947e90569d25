#include "Calculation/Series/RankSums.h"

#include <algorithm>
#include <cstddef>

namespace {

std::size_t Size(int64 number) {
    return static_cast<std::size_t>(number);
}

}  // namespace

RankSums::RankSums(Ranks* ranks, int32 groups, int32 vectors)
    : ranks_(ranks), groups_(ranks->Split(groups)), vectors_(ranks->Split(vectors)) {
    SetBranches();
}

// A branch is as many groups as its place and the rank's groups allow.
void RankSums::SetBranches() {
    const int32 groups = static_cast<int32>(groups_.back());
    branches_.resize(Size(ranks_->Count()));
    std::vector<bool> isBranch(Size(groups), true);
    for (int32 size = 1; size < groups; size *= 2)
        for (int32 group = 0; group < groups; group += 2 * size) {
            const int32 end = group + 2 * size;
            bool isOfOne = false;
            for (int32 rank = 0; rank < ranks_->Count(); rank++)
                isOfOne |= IsWithin(rank, group, end);
            if (isOfOne) isBranch[Size(group + size)] = false;
            if (!isOfOne)
                lastSums_.push_back({group, group + size});
            else if (IsWithin(ranks_->Own(), group, end))
                ownSums_.push_back({group, group + size});
        }
    for (int32 rank = 0; rank < ranks_->Count(); rank++)
        for (int64 group = groups_[Size(rank)]; group < groups_[Size(rank) + 1]; group++)
            if (isBranch[Size(group)]) branches_[Size(rank)].push_back(static_cast<int32>(group));
}

bool RankSums::IsWithin(int32 rank, int32 begin, int32 end) const {
    return groups_[Size(rank)] <= begin && end <= groups_[Size(rank) + 1];
}

void RankSums::AddVectors(double* sums, const std::vector<Sum>& tree, int32 begin,
                          int32 end) const {
    for (const Sum& sum : tree) {
        double* const to = RowsOf(sums, sum.to, begin);
        const double* const from = RowsOf(sums, sum.from, begin);
        const int64 numbers = (end - begin) * kNumbers;
        for (int64 i = 0; i < numbers; i++)
            to[i] += from[i];
    }
}

// Behind what a rank sends to another stands whether it has stopped.
bool RankSums::Add(double* sums, bool stopped) {
    AddVectors(sums, ownSums_, 0, static_cast<int32>(vectors_.back()));
    RankParts sentParts{0};
    RankParts receivedParts{0};
    const auto own = static_cast<int64>(branches_[ranks_->Index()].size());
    for (int32 rank = 0; rank < ranks_->Count(); rank++) {
        const int64 theirs = (vectors_[Size(rank) + 1] - vectors_[Size(rank)]) * kNumbers;
        const int64 mine = (EndVector() - BeginVector()) * kNumbers;
        const auto branches = static_cast<int64>(branches_[Size(rank)].size());
        sentParts.push_back(sentParts.back() + own * theirs + 1);
        receivedParts.push_back(receivedParts.back() + branches * mine + 1);
    }
    sent_.resize(Size(sentParts.back()));
    received_.resize(Size(receivedParts.back()));
    double* at = sent_.data();
    for (std::size_t rank = 0; rank + 1 < vectors_.size(); rank++) {
        for (const int32 branch : branches_[ranks_->Index()])
            at = std::copy(RowsOf(sums, branch, vectors_[rank]),
                           RowsOf(sums, branch, vectors_[rank + 1]), at);
        *at++ = stopped ? 1.0 : 0.0;
    }
    ranks_->Exchange(sent_.data(), sentParts, received_.data(), receivedParts);
    if (received_[Size(receivedParts[1]) - 1] != 0.0) return false;
    const int64 mine = (EndVector() - BeginVector()) * kNumbers;
    for (std::size_t rank = 0; rank + 1 < vectors_.size(); rank++) {
        const double* from = received_.data() + receivedParts[rank];
        for (const int32 branch : branches_[rank]) {
            std::copy(from, from + mine, RowsOf(sums, branch, BeginVector()));
            from += mine;
        }
    }
    AddVectors(sums, lastSums_, BeginVector(), EndVector());
    return true;
}

void RankSums::ShareOrders(const SeriesArrays& arrays, int32 k) {
    const auto rowsOf = [&](int64 vector) {
        return arrays.Vector(static_cast<int32>(vector)) + (k + 2) * 3 * kSlots;
    };
    RankParts parts = vectors_;
    for (int64& part : parts)
        part *= kNumbers;
    sent_.resize(Size(parts.back()));
    for (int64 vector = BeginVector(); vector < EndVector(); vector++)
        std::copy(rowsOf(vector), rowsOf(vector) + kNumbers, sent_.data() + vector * kNumbers);
    ranks_->Share(sent_.data(), parts);
    for (int64 vector = 0; vector < vectors_.back(); vector++)
        std::copy(sent_.data() + vector * kNumbers, sent_.data() + (vector + 1) * kNumbers,
                  rowsOf(vector));
}
