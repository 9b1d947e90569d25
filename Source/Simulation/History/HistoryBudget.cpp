#include "Simulation/History/HistoryBudget.h"

#include <algorithm>

#include "Simulation/History/RunHistory.h"

namespace {

std::size_t BytesOf(int32 megabytes) {
    return static_cast<std::size_t>(megabytes) * 1'000'000;
}

}  // namespace

HistoryBudget& HistoryBudget::Shared() {
    static HistoryBudget shared;
    return shared;
}

int32 HistoryBudget::Megabytes() const {
    const std::lock_guard lock(mutex_);
    return megabytes_;
}

void HistoryBudget::Set(int32 megabytes) {
    const std::lock_guard lock(mutex_);
    megabytes_ = std::clamp(megabytes, kMin, kMax);
    for (RunHistory* const history : histories_)
        history->SetBudget(BytesOf(megabytes_));
}

void HistoryBudget::Enter(RunHistory* history) {
    const std::lock_guard lock(mutex_);
    histories_.push_back(history);
    history->SetBudget(BytesOf(megabytes_));
}

void HistoryBudget::Leave(const RunHistory* history) {
    const std::lock_guard lock(mutex_);
    std::erase(histories_, history);
}
