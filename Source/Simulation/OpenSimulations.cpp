#include "Simulation/OpenSimulations.h"

#include <algorithm>
#include <limits>

#include "Displays/Base/WindowPlacement.h"
#include "Platform/Interface/Handles/BScreen.h"
#include "Platform/Interface/Handles/BWindow.h"

namespace {

constexpr float kAside = 24.0f;
constexpr float kTitle = 32.0f;  // between windows below each other, with the borders
constexpr float kGap = 10.0f;
constexpr float kScreenFraction = 0.9f;  // in which corners of windows lie
constexpr int32 kMaxTimes = 40;          // then the windows have left the screen

float CommonArea(const BRect& a, const BRect& b) {
    const float width = std::min(a.right, b.right) - std::max(a.left, b.left);
    const float height = std::min(a.bottom, b.bottom) - std::max(a.top, b.top);
    return std::max(width, 0.0f) * std::max(height, 0.0f);
}

}  // namespace

OpenSimulations& OpenSimulations::Shared() {
    static OpenSimulations shared;
    return shared;
}

int32 OpenSimulations::Enter(const BWindow* window, const std::string& path) {
    const std::lock_guard lock(mutex_);
    const Entry* const before = Find(window);
    Entry entry{window, path, 1, before != nullptr && before->isPlaced};
    std::erase_if(entries_, [=](const Entry& other) { return other.window == window; });
    const auto isUsed = [&] {
        return std::ranges::any_of(entries_, [&](const Entry& other) {
            return other.path == path && other.number == entry.number;
        });
    };
    while (!path.empty() && isUsed())
        entry.number++;
    entries_.push_back(entry);
    return entry.number;
}

void OpenSimulations::Leave(const BWindow* window) {
    const std::lock_guard lock(mutex_);
    std::erase_if(entries_, [=](const Entry& entry) { return entry.window == window; });
}

void OpenSimulations::MoveTo(BWindow* window, const BLooper* simulation, BPoint corner) {
    const std::lock_guard lock(mutex_);
    const Entry* const owner = Find(simulation);
    const int32 further = owner == nullptr ? 0 : std::min(owner->number - 1, kMaxTimes);
    const auto step = [&] { corner = {corner.x + kAside, corner.y + kAside}; };
    for (int32 i = 0; i < further; i++)
        step();
    for (int32 i = further; i < kMaxTimes && IsTaken(window, corner); i++)
        step();
    window->MoveTo(corner);
    Entry* entry = Find(window);
    if (entry == nullptr) entry = &entries_.emplace_back(Entry{window, {}});
    entry->isPlaced = true;
}

void OpenSimulations::Place(BWindow* window, const BLooper* simulation) {
    {
        const std::lock_guard lock(mutex_);
        if (const Entry* const entry = Find(window); entry != nullptr && entry->isPlaced) return;
    }
    MoveTo(window, simulation, {window->Frame().left, window->Frame().top});
}

void OpenSimulations::PlaceBeside(BWindow* window, const BLooper* simulation) {
    {
        const std::lock_guard lock(mutex_);
        if (const Entry* const entry = Find(window); entry != nullptr && entry->isPlaced) return;
    }
    MoveTo(window, simulation, FreeCorner(*window));
}

// Where it would cover least of the others: where it is, or below or to the right of one of them.
BPoint OpenSimulations::FreeCorner(const BWindow& window) {
    const std::lock_guard lock(mutex_);
    const BRect own = window.Frame();
    BPoint best{own.left, own.top};
    const BScreen screen(&window);
    if (!screen.IsValid()) return best;
    std::vector<BRect> others;
    for (const Entry& entry : entries_)
        if (entry.window != &window && !entry.window->IsHidden())
            others.push_back(entry.window->Frame());
    std::vector<BPoint> corners{best};
    for (const BRect& other : others) {
        corners.push_back({other.left, other.bottom + kTitle});
        corners.push_back({other.right + kGap, other.top});
    }
    float least = std::numeric_limits<float>::infinity();
    for (const BPoint wanted : corners) {
        // Where a document that is opened again would have it, too.
        const BPoint corner = confine_point_to_frame(wanted, screen.Frame(), kScreenFraction);
        const BRect frame =
            FrameOnScreen({corner.x, corner.y, corner.x + own.Width(), corner.y + own.Height()},
                          screen.FreeFrame());
        float covered = 0.0f;
        for (const BRect& other : others)
            covered += CommonArea(frame, other);
        if (covered >= least) continue;
        least = covered;
        best = {frame.left, frame.top};
    }
    return best;
}

OpenSimulations::Entry* OpenSimulations::Find(const BLooper* window) {
    const auto found =
        std::ranges::find_if(entries_, [=](const Entry& entry) { return entry.window == window; });
    return found == entries_.end() ? nullptr : &*found;
}

bool OpenSimulations::IsTaken(const BWindow* window, BPoint corner) const {
    return std::ranges::any_of(entries_, [=](const Entry& entry) {
        if (entry.window == window || !entry.isPlaced) return false;
        const BRect frame = entry.window->Frame();
        return frame.left == corner.x && frame.top == corner.y;
    });
}
