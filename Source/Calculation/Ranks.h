// Processes that share the work of one calculator, on one machine or on many, numbered from 0.
// Number 0 has the calculator and the model; the others make their parts of what it calls for
// (RankHelper). What is exchanged are parts of arrays and of sums that are cut at fixed places: the
// results are the same bits on any number of them.
//
// All of them do each operation, in the same order, but for Send and Receive. One thread at a time
// calls. When one of them ends, all end.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Support/SupportDefs.h"

// Those of rank r stand from [r] to [r + 1].
using RankParts = std::vector<int64>;

class Ranks {
public:
    virtual ~Ranks() = default;
    [[nodiscard]] virtual int32 Count() const = 0;
    [[nodiscard]] virtual int32 Own() const = 0;
    [[nodiscard]] bool IsFirst() const { return Own() == 0; }
    // Threads that each of them should have.
    [[nodiscard]] virtual int32 Threads() const = 0;
    // Fewer pairs of bodies are not worth sharing.
    [[nodiscard]] virtual int64 LeastPairs() const = 0;

    // Number 0 sends so many bytes to all others. Call is the same where the others may have to
    // wait long.
    virtual void Tell(const void* data, std::size_t size) = 0;
    virtual void Hear(void* data, std::size_t size) = 0;
    virtual void Call(const void* data, std::size_t size) = 0;
    virtual void AwaitCall(void* data, std::size_t size) = 0;
    // Everybody gets everybody's part of the numbers.
    virtual void Share(double* numbers, const RankParts& parts) = 0;
    // Number 0 does.
    virtual void Gather(double* numbers, const RankParts& parts) = 0;
    // Each gives the others their parts of `from`, and gets its parts from them into `to`.
    virtual void Exchange(const double* from, const RankParts& fromParts, double* to,
                          const RankParts& toParts) = 0;

    // A text for number 0, from any of them; and one that has come, if any has.
    virtual void Send(std::string_view text) = 0;
    [[nodiscard]] virtual std::optional<std::string> Receive() = 0;

    // Ends all of them, with that exit status. Does not return.
    virtual void Abort(int status) = 0;

    // Parts of about the same size.
    [[nodiscard]] RankParts Split(int64 count) const {
        RankParts parts;
        for (int32 rank = 0; rank <= Count(); rank++)
            parts.push_back(count * rank / Count());
        return parts;
    }
    [[nodiscard]] std::size_t Index() const { return static_cast<std::size_t>(Own()); }
};

// What number 0 calls for.
struct RankTask {
    enum class Kind : int32 { kEnd, kForces, kSeries };
    Kind kind = Kind::kEnd;
    int32 order = 0;
    int32 bodies = 0;
    int32 massive = 0;
    // Of series, as SeriesForces::Make has them.
    double scale = 0.0;
    double theta = 0.0;
    double cutoff = 0.0;
};
