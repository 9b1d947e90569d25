#include "Simulation/RunResults.h"

#include "Model/Epochs/Epoch.h"

RunResult* RunResults::Keep(const AbEpoch* epoch) {
    std::erase_if(entries_, [](const auto& entry) { return entry.second.life.expired(); });
    const auto* const real = dynamic_cast<const Epoch*>(epoch);
    if (real == nullptr) return nullptr;
    Entry& entry = entries_[epoch];
    entry.life = real->Life();
    return &entry.result;
}

const RunResult* RunResults::Find(const AbEpoch* epoch) const {
    const auto found = entries_.find(epoch);
    return found == entries_.end() || found->second.life.expired() ? nullptr
                                                                   : &found->second.result;
}
