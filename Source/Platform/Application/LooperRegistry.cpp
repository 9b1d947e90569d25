#include "Platform/Application/LooperRegistry.h"

#include <mutex>
#include <unordered_map>

namespace {

struct Tables {
    std::mutex mutex;
    std::unordered_map<const BLooper*, LooperRef> byLooper;
    std::unordered_map<int32, LooperRef> byPort;
    int32 lastPort = 0;
};

// Never destroyed: threads may still use them while the program ends.
Tables& Live() {
    static auto* const tables = new Tables;
    return *tables;
}

template <typename Map, typename Key>
LooperRef Look(const Map& map, Key key) {
    std::lock_guard lock(Live().mutex);
    const auto found = map.find(key);
    return found == map.end() ? nullptr : found->second;
}

}  // namespace

LooperRef LooperRegistry::Add(BLooper* looper, int32 handlerToken, const char* name,
                              int32 portCapacity) {
    std::lock_guard lock(Live().mutex);
    const int32 port = ++Live().lastPort;
    auto link = std::make_shared<LooperLink>(looper, handlerToken, port, name, portCapacity);
    Live().byLooper.emplace(looper, link);
    Live().byPort.emplace(port, link);
    return link;
}

void LooperRegistry::Remove(const LooperRef& link) {
    std::lock_guard lock(Live().mutex);
    Live().byLooper.erase(link->looper);
    Live().byPort.erase(link->portNumber);
}

LooperRef LooperRegistry::Find(const BLooper* looper) {
    return Look(Live().byLooper, looper);
}

LooperRef LooperRegistry::Find(int32 portNumber) {
    return Look(Live().byPort, portNumber);
}
