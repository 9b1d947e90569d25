// The documents used last, the latest first: one list for the whole program, which the application
// fills and its menus show. Any thread may call.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "Platform/Application/BMessenger.h"
#include "Platform/Support/SupportDefs.h"

class RecentDocuments {
public:
    static constexpr std::size_t kMaxCount = 10;
    // Sent to subscribers when the list has changed.
    static constexpr uint32 kChanged = FourCC("rcch");

    // Never destroyed.
    [[nodiscard]] static RecentDocuments& Shared();

    // Puts a document at the front, and forgets the last of too many.
    void Note(const std::string& path);
    void Forget(const std::string& path);
    // Replaces the list; an empty one clears it.
    void Set(std::vector<std::string> paths);
    [[nodiscard]] std::vector<std::string> Paths() const;

    // Subscribers that are gone are forgotten in time.
    void Subscribe(const BMessenger& menu);
    void Unsubscribe(const BMessenger& menu);

private:
    void TellSubscribers();

    mutable std::mutex mutex_;
    std::vector<std::string> paths_;
    std::vector<BMessenger> subscribers_;
};
