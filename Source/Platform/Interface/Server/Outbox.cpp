#include "Platform/Interface/Server/Outbox.h"

namespace {

constexpr bigtime_t kNoWaiting = 0;

}  // namespace

bool Outbox::Send(const BMessenger& target, const BMessage& message) {
    const std::lock_guard lock(mutex_);
    const auto found = waiting_.find(target.Port());
    if (found == waiting_.end() && target.SendMessage(&message, kNoWaiting) != B_WOULD_BLOCK)
        return false;
    waiting_[target.Port()].emplace_back(target, message);
    return true;
}

bool Outbox::Retry() {
    const std::lock_guard lock(mutex_);
    for (auto port = waiting_.begin(); port != waiting_.end();) {
        Waiting& queue = port->second;
        while (!queue.empty() &&
               queue.front().first.SendMessage(&queue.front().second, kNoWaiting) != B_WOULD_BLOCK)
            queue.pop_front();
        port = queue.empty() ? waiting_.erase(port) : std::next(port);
    }
    return !waiting_.empty();
}
