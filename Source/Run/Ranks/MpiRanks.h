// Ranks that MPI has started. Made by the main thread before any other thread is there, and
// destroyed by it when all ranks are done.
#pragma once

#include <climits>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Calculation/Ranks.h"

class MpiRanks final : public Ranks {
public:
    // MPI counts in int: what is longer goes in several messages.
    static constexpr int64 kMost = INT_MAX;

    MpiRanks(int* argc, char*** argv, int64 most = kMost);
    ~MpiRanks() override;
    MpiRanks(const MpiRanks&) = delete;
    MpiRanks& operator=(const MpiRanks&) = delete;

    [[nodiscard]] int32 Count() const override { return count_; }
    [[nodiscard]] int32 Own() const override { return own_; }
    [[nodiscard]] int32 Threads() const override { return threads_; }
    [[nodiscard]] int64 LeastPairs() const override;

    void Tell(const void* data, std::size_t size) override;
    void Hear(void* data, std::size_t size) override;
    void Call(const void* data, std::size_t size) override;
    void AwaitCall(void* data, std::size_t size) override;
    void Share(double* numbers, const RankParts& parts) override;
    void Gather(double* numbers, const RankParts& parts) override;
    void Exchange(const double* from, const RankParts& fromParts, double* to,
                  const RankParts& toParts) override;
    void Send(std::string_view text) override;
    [[nodiscard]] std::optional<std::string> Receive() override;
    void Abort(int status) override;

private:
    // How many numbers each rank has, and where they begin, as MPI wants it.
    struct Layout {
        std::vector<int> counts;
        std::vector<int> begins;
        void Set(const RankParts& parts);
    };

    // From one to all others, in pieces.
    void Broadcast(void* data, std::size_t size, int32 from) const;
    void GatherInPieces(double* numbers, const RankParts& parts) const;

    const int64 most_;
    int32 count_ = 1;
    int32 own_ = 0;
    int32 threads_ = 1;
    Layout layout_;
};
