// Ranks that are threads of one process, for tests: each runs the same function.
#pragma once

#include <barrier>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Calculation/Ranks.h"

class ThreadRanks {
public:
    // Number 0 runs `first` on this thread, the others run `other` until that returns.
    using Work = std::function<void(Ranks*)>;
    static void Run(int32 count, const Work& first, const Work& other);

private:
    class Rank;
    explicit ThreadRanks(int32 count) : meeting_(count), count_(count) {}

    std::barrier<> meeting_;
    const int32 count_;
    const void* told_ = nullptr;
    std::vector<const double*> numbers_ =
        std::vector<const double*>(static_cast<std::size_t>(count_));
    std::vector<const RankParts*> parts_ =
        std::vector<const RankParts*>(static_cast<std::size_t>(count_));
};
