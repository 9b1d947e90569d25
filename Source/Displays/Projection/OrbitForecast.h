// Where bodies will be if each goes on about the one that it is bound to as if the two were alone.
// Copies what it needs. A plain value.
#pragma once

#include <optional>
#include <vector>

#include "Model/Systems/OrbitalElements.h"
#include "Platform/Support/SupportDefs.h"

class Body;

class OrbitForecast {
public:
    // Only of so many of the heaviest bodies; the others stay where they are.
    static constexpr int32 kMaxBodies = 400;

    // In mass order. The caller holds the model's read lock.
    explicit OrbitForecast(const std::vector<Body*>& bodies);

    // Of the heavier bodies that it cannot leave, the one on the narrowest orbit; -1 if none.
    [[nodiscard]] int32 PrimaryOf(int32 body) const { return At(body).primary; }
    // s; infinite of what is bound to nothing.
    [[nodiscard]] double PeriodOf(int32 body) const;
    // So many seconds from now. What is bound to nothing stays.
    [[nodiscard]] ThreeVector PlaceOf(int32 body, double after) const;

private:
    struct Orbit {
        ThreeVector position;
        int32 primary = -1;
        OrbitalElements elements;
    };

    [[nodiscard]] const Orbit& At(int32 body) const {
        return orbits_[static_cast<std::size_t>(body)];
    }

    std::vector<Orbit> orbits_;
};
