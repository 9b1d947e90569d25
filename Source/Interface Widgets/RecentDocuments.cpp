#include "Interface Widgets/RecentDocuments.h"

#include <algorithm>

#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Server/WindowServer.h"

RecentDocuments& RecentDocuments::Shared() {
    static auto* const shared = new RecentDocuments;
    return *shared;
}

void RecentDocuments::Note(const std::string& path) {
    const std::lock_guard lock(mutex_);
    if (!paths_.empty() && paths_.front() == path) return;
    std::erase(paths_, path);
    paths_.insert(paths_.begin(), path);
    if (paths_.size() > kMaxCount) paths_.pop_back();
    TellSubscribers();
}

void RecentDocuments::Forget(const std::string& path) {
    const std::lock_guard lock(mutex_);
    if (std::erase(paths_, path) != 0) TellSubscribers();
}

void RecentDocuments::Set(std::vector<std::string> paths) {
    const std::lock_guard lock(mutex_);
    paths_ = std::move(paths);
    if (paths_.size() > kMaxCount) paths_.resize(kMaxCount);
    TellSubscribers();
}

std::vector<std::string> RecentDocuments::Paths() const {
    const std::lock_guard lock(mutex_);
    return paths_;
}

void RecentDocuments::Subscribe(const BMessenger& menu) {
    const std::lock_guard lock(mutex_);
    std::erase_if(subscribers_, [](const BMessenger& other) { return !other.IsValid(); });
    subscribers_.push_back(menu);
}

void RecentDocuments::Unsubscribe(const BMessenger& menu) {
    const std::lock_guard lock(mutex_);
    std::erase(subscribers_, menu);
}

// Notified one by one without waiting, so the list may stay locked.
void RecentDocuments::TellSubscribers() {
    for (const BMessenger& menu : subscribers_)
        WindowServer::Deliver(menu, BMessage(kChanged));
}
