#include "Benchmarks/Stopwatch.h"

#include <algorithm>
#include <chrono>

std::vector<Timing> Measure(const std::vector<std::function<void()>>& pieces, int32 calls,
                            int32 repetitions) {
    using Clock = std::chrono::steady_clock;
    std::vector<std::vector<double>> times(pieces.size());
    for (int32 repetition = -1; repetition < repetitions; repetition++)
        for (size_t piece = 0; piece < pieces.size(); piece++) {
            const Clock::time_point begin = Clock::now();
            for (int32 call = 0; call < calls; call++)
                pieces[piece]();
            const std::chrono::duration<double> time = Clock::now() - begin;
            if (repetition >= 0) times[piece].push_back(time.count() / calls);
        }
    std::vector<Timing> timings;
    for (std::vector<double>& list : times) {
        std::sort(list.begin(), list.end());
        timings.push_back({list[list.size() / 2], list.front()});
    }
    return timings;
}
