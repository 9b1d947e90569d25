#include "Simulation/OpenSimulations.h"

#include <algorithm>

#include "Platform/Interface/Handles/BWindow.h"

namespace {

constexpr float kAside = 24.0f;
constexpr int kMaxTimes = 40;  // then the windows have left the screen

}  // namespace

OpenSimulations& OpenSimulations::Shared() {
    static OpenSimulations shared;
    return shared;
}

int32 OpenSimulations::Enter(const BWindow* window, const std::string& path) {
    const std::lock_guard lock(mutex_);
    std::erase_if(entries_, [=](const Entry& entry) { return entry.window == window; });
    const auto isUsed = [&](int32 number) {
        return std::ranges::any_of(entries_, [&](const Entry& entry) {
            return entry.path == path && entry.number == number;
        });
    };
    int32 number = 1;
    while (!path.empty() && isUsed(number))
        number++;
    entries_.push_back({window, path, number});
    return number;
}

void OpenSimulations::Leave(const BWindow* window) {
    const std::lock_guard lock(mutex_);
    std::erase_if(entries_, [=](const Entry& entry) { return entry.window == window; });
}

void OpenSimulations::MoveTo(BWindow* window, BPoint corner) {
    const std::lock_guard lock(mutex_);
    for (int i = 0; i < kMaxTimes && IsTaken(window, corner); i++)
        corner = {corner.x + kAside, corner.y + kAside};
    window->MoveTo(corner);
}

bool OpenSimulations::IsTaken(const BWindow* window, BPoint corner) const {
    return std::ranges::any_of(entries_, [=](const Entry& entry) {
        if (entry.window == window) return false;
        const BRect frame = entry.window->Frame();
        return frame.left == corner.x && frame.top == corner.y;
    });
}
