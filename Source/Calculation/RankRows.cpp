#include "Calculation/RankRows.h"

#include <algorithm>

#include "Calculation/ForceInstances.h"

namespace {

std::size_t Size(int64 number) {
    return static_cast<std::size_t>(number);
}

}  // namespace

RankRows::RankRows(Ranks* ranks, int32 bodies)
    : ranks_(ranks),
      bodies_(bodies),
      vectors_(ranks->Split((bodies + kMaxLanes - 1) / kMaxLanes)) {}

int32 RankRows::Begin() const {
    return static_cast<int32>(vectors_[ranks_->Index()]) * kMaxLanes;
}

int32 RankRows::End() const {
    return std::min(static_cast<int32>(vectors_[ranks_->Index() + 1]) * kMaxLanes, bodies_);
}

void RankRows::Tell(Rows rows) {
    const int64 length = vectors_.back() * kMaxLanes;
    buffer_.resize(rows.size() * Size(length));
    double* at = buffer_.data();
    if (ranks_->IsFirst()) {
        for (const double* const row : rows)
            at = std::copy(row, row + length, at);
        ranks_->Tell(buffer_.data(), buffer_.size() * sizeof(double));
        return;
    }
    ranks_->Hear(buffer_.data(), buffer_.size() * sizeof(double));
    for (double* const row : rows) {
        std::copy(at, at + length, row);
        at += length;
    }
}

void RankRows::Share(Rows rows, std::initializer_list<double*> values) {
    const RankParts parts = PartsOf(rows.size(), values.size());
    buffer_.resize(Size(parts.back()));
    int64 at = parts[ranks_->Index()];
    for (const double* const value : values)
        buffer_[Size(at++)] = *value;
    Pack(rows, at);
    ranks_->Share(buffer_.data(), parts);
    for (int32 rank = 0; rank < ranks_->Count(); rank++) {
        const double* seen = &buffer_[Size(parts[Size(rank)])];
        for (double* const value : values)
            *value = std::max(*value, *seen++);
    }
    Unpack(rows, parts);
}

void RankRows::Gather(Rows rows) {
    const RankParts parts = PartsOf(rows.size(), 0);
    buffer_.resize(Size(parts.back()));
    Pack(rows, parts[ranks_->Index()]);
    ranks_->Gather(buffer_.data(), parts);
    if (ranks_->IsFirst()) Unpack(rows, parts);
}

// A rank's values stand before its rows.
RankParts RankRows::PartsOf(std::size_t rows, std::size_t values) const {
    RankParts parts = vectors_;
    for (std::size_t rank = 0; rank < parts.size(); rank++)
        parts[rank] =
            parts[rank] * kMaxLanes * static_cast<int64>(rows) + static_cast<int64>(rank * values);
    return parts;
}

void RankRows::Pack(Rows rows, int64 at) {
    for (const double* const row : rows)
        for (int32 body = Begin(); body < End(); body++)
            buffer_[Size(at++)] = row[body];
}

void RankRows::Unpack(Rows rows, const RankParts& parts) {
    for (std::size_t rank = 0; rank + 1 < vectors_.size(); rank++) {
        const int64 begin = vectors_[rank] * kMaxLanes;
        const int64 end = std::min<int64>(vectors_[rank + 1] * kMaxLanes, bodies_);
        const int64 values =
            parts[rank + 1] - parts[rank] -
            (vectors_[rank + 1] - vectors_[rank]) * kMaxLanes * static_cast<int64>(rows.size());
        const double* from = buffer_.data() + parts[rank] + values;
        for (double* const row : rows) {
            std::copy(from, from + (end - begin), row + begin);
            from += end - begin;
        }
    }
}
