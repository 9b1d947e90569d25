// The kept samples of one body in one run, in the order of time even where the run goes back. A
// plain value, guarded by its owner.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

#include "Simulation/History/Sample.h"

class SampleTrack {
public:
    explicit SampleTrack(bool isBackwards = false) : isBackwards_(isBackwards) {}

    // With these, in the order of time; `isBroken`: what is to be added next is not joined to them.
    SampleTrack(bool isBackwards, std::deque<Sample> samples, bool isBroken)
        : isBackwards_(isBackwards), isBroken_(isBroken), samples_(std::move(samples)) {}

    void Add(const Sample& sample);
    // What is to be added next is not joined to what is there.
    void Break() { isBroken_ = true; }
    [[nodiscard]] bool IsBroken() const { return isBroken_; }
    [[nodiscard]] std::size_t Count() const { return samples_.size(); }
    [[nodiscard]] const std::deque<Sample>& All() const { return samples_; }
    // The one that was added last.
    [[nodiscard]] const Sample& Last() const {
        return isBackwards_ ? samples_.front() : samples_.back();
    }

    // Those that tell where the body was between the two times: with the one before and the one
    // after, where there are such. `tail`, if given, is where the track has come to. Of
    // more than `most` the newest.
    [[nodiscard]] std::vector<Sample> From(double from, double to,
                                           const std::optional<Sample>& tail,
                                           std::size_t most) const;

    // Of the samples up to that time every second one goes; where fewer than six a revolution would
    // be left, all go, and leave a gap. The last one stays. Returns how many went; needs no memory.
    std::size_t Thin(double until);
    void Clear();

private:
    void AddInFront(const Sample& sample);
    std::size_t HalveUpTo(double until);
    std::size_t DropLonely();

    bool isBackwards_;
    bool isBroken_ = true;
    std::deque<Sample> samples_;  // small blocks, so that no growth copies what is there
};
