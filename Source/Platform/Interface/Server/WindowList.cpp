#include "Platform/Interface/Server/WindowList.h"

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <vector>

namespace {

std::mutex gMutex;
std::vector<BWindow*> gWindows;

}  // namespace

void WindowList::Add(BWindow* window) {
    const std::lock_guard lock(gMutex);
    gWindows.push_back(window);
}

void WindowList::Remove(BWindow* window) {
    const std::lock_guard lock(gMutex);
    std::erase(gWindows, window);
}

int32 WindowList::Count() {
    const std::lock_guard lock(gMutex);
    return static_cast<int32>(gWindows.size());
}

BWindow* WindowList::At(int32 index) {
    const std::lock_guard lock(gMutex);
    if (index < 0 || index >= static_cast<int32>(gWindows.size())) return nullptr;
    return gWindows[static_cast<std::size_t>(index)];
}
