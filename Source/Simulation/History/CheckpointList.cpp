#include "Simulation/History/CheckpointList.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace {

// Interactions that are calculated within a few milliseconds.
constexpr std::size_t kInteractions = 400'000;
// A checkpoint costs as much as a few steps, and ends a batch.
constexpr std::size_t kMinSpacing = 64;
constexpr std::size_t kMaxSpacing = 4096;

}  // namespace

CheckpointList::CheckpointList(std::size_t bodies, std::size_t massive, bool isBackwards)
    : spacing_(static_cast<int64>(
          std::clamp(std::bit_floor(kInteractions / std::max<std::size_t>(bodies * massive, 1)),
                     kMinSpacing, kMaxSpacing))),
      isBackwards_(isBackwards) {}

void CheckpointList::Add(RunCheckpoint checkpoint) {
    const std::size_t bytes = checkpoint.Bytes();
    list_.push_back(std::make_shared<const RunCheckpoint>(std::move(checkpoint)));
    bytes_ += bytes;
}

bool CheckpointList::Thin() {
    const auto isSpare = [this](const auto& checkpoint) {
        return !checkpoint->isPinned && checkpoint->report % spacing_ != 0;
    };
    const auto hasSpare = [](const auto& checkpoint) { return !checkpoint->isPinned; };
    if (std::none_of(list_.begin(), list_.end(), hasSpare)) return false;
    // First those at mergers, which the calculation can go through.
    if (std::none_of(list_.begin(), list_.end(), isSpare)) spacing_ *= 2;
    std::erase_if(list_, [&](const auto& checkpoint) {
        if (!isSpare(checkpoint)) return false;
        bytes_ -= checkpoint->Bytes();
        return true;
    });
    return true;
}

void CheckpointList::ThinTo(std::size_t most) {
    while (list_.size() > most && Thin()) {
    }
}

std::shared_ptr<const RunCheckpoint> CheckpointList::Before(double time) const {
    if (list_.empty()) return nullptr;
    const auto at = std::lower_bound(
        list_.begin(), list_.end(), time, [this](const auto& checkpoint, double t) {
            return isBackwards_ ? checkpoint->state.time > t : checkpoint->state.time < t;
        });
    return at == list_.begin() ? *at : *std::prev(at);
}
