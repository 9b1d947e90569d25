// What a text of bodies asks for.
#pragma once

#include <cstdint>
#include <vector>

#include "Exchange/ExampleText.h"

// More stars of clusters and bodies of belts than these only take time.
constexpr std::int64_t kManyStars = 200;

inline std::int64_t CountStars(const std::vector<ExampleSystem>& systems) {
    std::int64_t stars = 0;
    for (const ExampleSystem& system : systems)
        stars += system.count + CountStars(system.members);
    return stars;
}
