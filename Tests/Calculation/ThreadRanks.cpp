#include "Tests/Calculation/ThreadRanks.h"

#include <algorithm>
#include <cstring>
#include <thread>

// Everybody shows where its numbers are, all copy what is theirs, and nobody goes on before all
// have.
class ThreadRanks::Rank final : public Ranks {
public:
    Rank(ThreadRanks* ranks, int32 own) : ranks_(*ranks), own_(own) {}

    int32 Count() const override { return ranks_.count_; }
    int32 Own() const override { return own_; }
    int32 Threads() const override { return 1; }
    int64 LeastPairs() const override { return 0; }

    void Tell(const void* data, std::size_t) override {
        ranks_.told_ = data;
        Meet();
        Meet();
    }
    void Hear(void* data, std::size_t size) override {
        Meet();
        if (size > 0) std::memcpy(data, ranks_.told_, size);
        Meet();
    }
    void Call(const void* data, std::size_t size) override { Tell(data, size); }
    void AwaitCall(void* data, std::size_t size) override { Hear(data, size); }

    void Share(double* numbers, const RankParts& parts) override {
        ranks_.numbers_[Index()] = numbers;
        Meet();
        for (std::size_t rank = 0; rank + 1 < parts.size(); rank++)
            if (rank != Index())
                std::copy(ranks_.numbers_[rank] + parts[rank],
                          ranks_.numbers_[rank] + parts[rank + 1], numbers + parts[rank]);
        Meet();
    }
    void Gather(double* numbers, const RankParts& parts) override {
        if (IsFirst()) return Share(numbers, parts);
        ranks_.numbers_[Index()] = numbers;
        Meet();
        Meet();
    }
    void Exchange(const double* from, const RankParts& fromParts, double* to,
                  const RankParts& toParts) override {
        ranks_.numbers_[Index()] = from;
        ranks_.parts_[Index()] = &fromParts;
        Meet();
        for (std::size_t rank = 0; rank + 1 < toParts.size(); rank++) {
            const RankParts& theirs = *ranks_.parts_[rank];
            std::copy(ranks_.numbers_[rank] + theirs[Index()],
                      ranks_.numbers_[rank] + theirs[Index() + 1], to + toParts[rank]);
        }
        Meet();
    }

    void Send(std::string_view) override {}
    std::optional<std::string> Receive() override { return std::nullopt; }
    void Abort(int) override {}

private:
    void Meet() { ranks_.meeting_.arrive_and_wait(); }

    ThreadRanks& ranks_;
    const int32 own_;
};

void ThreadRanks::Run(int32 count, const Work& first, const Work& other) {
    ThreadRanks ranks(count);
    std::vector<std::thread> threads;
    for (int32 own = 1; own < count; own++)
        threads.emplace_back([&, own] {
            Rank rank(&ranks, own);
            other(&rank);
        });
    Rank rank(&ranks, 0);
    first(&rank);
    for (std::thread& thread : threads)
        thread.join();
}
