#include "Simulation/Epochs/PictureTrails.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "Simulation/History/RelativeSamples.h"

namespace {

// A trail is seen if it is as long as this part of the picture, and no longer one is looked for.
constexpr double kSeen = 0.15;

double SizeOf(const Extent& extent) {
    if (extent.IsEmpty()) return 0.0;
    const ThreeVector size = extent.high - extent.low;
    return std::max(size.x, size.y);
}

Extent ExtentOf(const PictureTrail& trail) {
    Extent extent;
    for (const Sample& sample : trail.samples)
        extent.Add(sample.position);
    return extent;
}

double LongestOf(const std::vector<PictureTrail>& trails) {
    double longest = 0.0;
    for (const PictureTrail& trail : trails)
        longest = std::max(longest, SizeOf(ExtentOf(trail)));
    return longest;
}

// How much of a picture of all of them the longest one fills.
double SeenOf(const std::vector<PictureTrail>& trails) {
    const double all = SizeOf(ExtentOf(trails));
    return all > 0.0 ? LongestOf(trails) / all : 0.0;
}

// The heavier body that would lead it round fastest; the body's own number: there is none.
std::size_t CentreOf(std::size_t body, const std::vector<PictureTrail>& trails) {
    std::size_t centre = body;
    double fastest = 0.0;
    if (trails[body].samples.empty()) return centre;
    for (std::size_t other = 0; other < trails.size(); other++) {
        if (!(trails[other].mass > trails[body].mass) || trails[other].samples.empty()) continue;
        const ThreeVector way =
            trails[other].samples.back().position - trails[body].samples.back().position;
        const double distance = std::sqrt(Dot(way, way));
        const double rate = trails[other].mass / (distance * distance * distance);
        if (rate <= fastest) continue;
        fastest = rate;
        centre = other;
    }
    return centre;
}

std::vector<PictureTrail> SeenFrom(std::size_t centre, const std::vector<std::size_t>& centres,
                                   const std::vector<PictureTrail>& trails) {
    std::vector<PictureTrail> seen;
    const PictureTrail& own = trails[centre];
    for (std::size_t body = 0; body < trails.size(); body++) {
        if (body != centre && centres[body] != centre) continue;
        seen.push_back(
            {trails[body].color, trails[body].mass, Less(trails[body].samples, own.samples, 1.0)});
    }
    return seen;
}

}  // namespace

Extent ExtentOf(const std::vector<PictureTrail>& trails) {
    Extent all;
    for (const PictureTrail& trail : trails)
        all.Add(ExtentOf(trail));
    return all;
}

std::vector<PictureTrail> TrailsToSee(std::vector<PictureTrail> trails) {
    double best = SeenOf(trails);
    if (best >= kSeen) return trails;
    std::vector<std::size_t> centres(trails.size());
    for (std::size_t body = 0; body < trails.size(); body++)
        centres[body] = CentreOf(body, trails);
    std::vector<PictureTrail> chosen = trails;
    for (std::size_t centre = 0; centre < trails.size() && best < kSeen; centre++) {
        if (std::ranges::count(centres, centre) < (centres[centre] == centre ? 2 : 1)) continue;
        std::vector<PictureTrail> seen = SeenFrom(centre, centres, trails);
        const double part = SeenOf(seen);
        if (part <= best) continue;
        best = part;
        chosen = std::move(seen);
    }
    if (best >= kSeen) return chosen;
    const auto longest = std::ranges::max_element(
        chosen, {}, [](const PictureTrail& trail) { return SizeOf(ExtentOf(trail)); });
    if (longest == chosen.end()) return chosen;
    PictureTrail only = std::move(*longest);
    chosen.clear();
    chosen.push_back(std::move(only));
    return chosen;
}
