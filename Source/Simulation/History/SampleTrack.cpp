#include "Simulation/History/SampleTrack.h"

#include <algorithm>
#include <cmath>

namespace {

// Of the angle between the velocities at both ends of an interval: six of them make a revolution.
constexpr double kCosineOfWidest = 0.5;

bool IsTooWide(const Sample& a, const Sample& b) {
    const double lengths = std::sqrt(Dot(a.velocity, a.velocity) * Dot(b.velocity, b.velocity));
    return Dot(a.velocity, b.velocity) < kCosineOfWidest * lengths;
}

}  // namespace

void SampleTrack::Add(const Sample& sample) {
    if (isBackwards_) return AddInFront(sample);
    samples_.push_back(sample);
    if (isBroken_) samples_.back().isJoined = false;
    isBroken_ = false;
}

// Whether they are joined stands in the later one of two.
void SampleTrack::AddInFront(const Sample& sample) {
    if (!samples_.empty()) samples_.front().isJoined = sample.isJoined && !isBroken_;
    samples_.push_front(sample);
    samples_.front().isJoined = false;
    isBroken_ = false;
}

void SampleTrack::Clear() {
    samples_.clear();
    Break();
}

std::vector<Sample> SampleTrack::From(double from, double to, const std::optional<Sample>& tail,
                                      std::size_t most) const {
    const auto isEarlier = [](const Sample& sample, double time) { return sample.time < time; };
    auto first = std::lower_bound(samples_.begin(), samples_.end(), from, isEarlier);
    auto last = std::lower_bound(first, samples_.end(), to, isEarlier);
    if (first != samples_.begin()) --first;
    // All of one moment: after a jump there are two.
    const bool reachesEnd = last == samples_.end();
    if (!reachesEnd) {
        const double end = last->time;
        while (last != samples_.end() && last->time <= end)
            ++last;
    }
    const bool reachesBegin = first == samples_.begin();
    if (static_cast<std::size_t>(last - first) > most) {
        const auto kept = static_cast<std::ptrdiff_t>(most);
        if (isBackwards_)
            last = first + kept;
        else
            first = last - kept;
    }
    std::vector<Sample> found(first, last);
    if (isBackwards_) {
        if (!tail || !reachesBegin || (!samples_.empty() && tail->time >= samples_.front().time))
            return found;
        if (!found.empty()) found.front().isJoined = tail->isJoined && !isBroken_;
        found.insert(found.begin(), *tail);
        found.front().isJoined = false;
        return found;
    }
    const bool isLater = tail && (samples_.empty() || tail->time > samples_.back().time);
    if (reachesEnd && isLater) {
        found.push_back(*tail);
        if (isBroken_) found.back().isJoined = false;
    }
    return found;
}

std::size_t SampleTrack::Thin(double until) {
    const std::size_t halved = HalveUpTo(until);
    return halved + DropLonely();
}

std::size_t SampleTrack::HalveUpTo(double until) {
    const std::size_t before = samples_.size();
    std::size_t to = 0;
    bool wasDropped = true;  // at the start of a stretch: it stays
    for (std::size_t i = 0; i < before; i++) {
        Sample sample = samples_[i];
        const bool isBefore = isBackwards_ ? sample.time > until : sample.time < until;
        const bool isInside =
            sample.isJoined && i + 1 < before && samples_[i + 1].isJoined && isBefore;
        if (isInside && !wasDropped) {
            wasDropped = true;
            continue;
        }
        if (wasDropped && sample.isJoined && to > 0 && IsTooWide(samples_[to - 1], sample))
            sample.isJoined = false;
        wasDropped = false;
        samples_[to++] = sample;
    }
    samples_.resize(to);
    return before - to;
}

// A sample between two gaps tells nothing.
std::size_t SampleTrack::DropLonely() {
    const std::size_t before = samples_.size();
    std::size_t to = 0;
    for (std::size_t i = 0; i < before; i++) {
        const bool leadsOn = i + 1 == before || samples_[i + 1].isJoined;
        if (samples_[i].isJoined || leadsOn) samples_[to++] = samples_[i];
    }
    samples_.resize(to);
    return before - to;
}
