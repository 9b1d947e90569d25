#include "Simulation/Trust/StoryDifference.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {

constexpr double kNearest = 1e-3;

double Size(const ThreeVector& v) {
    return std::hypot(v.x, v.y, v.z);
}

ThreeVector CenterOf(const SystemState& state) {
    ThreeVector sum;
    double mass = 0.0;
    for (std::size_t i = 0; i < state.CountBodies(); i++) {
        sum += state.Position(i) * state.gm[i];
        mass += state.gm[i];
    }
    return mass > 0.0 ? sum * (1.0 / mass) : ThreeVector{};
}

// The other's bodies in the order of the story; empty: they are not the same.
std::vector<std::size_t> Places(const SystemState& story, const SystemState& other) {
    std::unordered_map<int64, std::size_t> byID;
    for (std::size_t i = 0; i < other.CountBodies(); i++)
        byID[other.ids[i]] = i;
    std::vector<std::size_t> places;
    for (const int64 id : story.ids)
        if (const auto found = byID.find(id); found != byID.end()) places.push_back(found->second);
    if (places.size() != story.CountBodies() || places.size() != other.CountBodies())
        places.clear();
    return places;
}

void Note(std::optional<double>* from, bool isBeyond, double time) {
    if (isBeyond && !*from) *from = time;
}

}  // namespace

void StoryDifference::Add(const SystemState& story, const std::vector<double>& radii,
                          const SystemState& other) {
    if (bodiesFrom_) return;
    const std::vector<std::size_t> places = Places(story, other);
    Note(&bodiesFrom_, places.empty(), story.time);
    if (places.empty()) return;
    moments_++;
    const ThreeVector center = CenterOf(story);
    double size = 0.0;
    for (std::size_t i = 0; i < places.size(); i++)
        size = std::max(size, Size(story.Position(i) - center));
    if (!(size > 0.0)) return;
    for (std::size_t i = 0; i < places.size(); i++) {
        const double apart = Size(story.Position(i) - other.Position(places[i]));
        const double part = apart / std::max(Size(story.Position(i) - center), kNearest * size);
        largest_ = std::max(largest_, part);
        Note(&pixelFrom_, apart > kPixel * size, story.time);
        Note(&percentFrom_, part > kPercent, story.time);
        Note(&radiusFrom_, radii[i] > 0.0 && apart > radii[i], story.time);
    }
}
