// The bodies of a run, in the arrays of the integrator that moves them. During a batch their state
// lives there, and Body objects are written at the end of it: the write lock is held until then, so
// nobody can see them earlier. Owned by a calculator and used with the model lock held.
#pragma once

#include <optional>
#include <vector>

#include "Calculation/BodyArrays.h"

class Body;
struct StopFlags;

class RunBodies {
public:
    // Fills the arrays, which have room for these bodies, and keeps them.
    void Load(const std::vector<Body*>& bodies, const BodyRows& rows);
    // A pair touches within the sum of its radii. It is formed where it is needed: stored for
    // each pair it would take too much memory.
    void ComputeKissDist(const std::vector<Body*>& bodies);
    // All radii count as 0.
    void IgnoreKissDist();
    void Store(const std::vector<Body*>& bodies) const;

    // These are the bodies that were loaded, and nobody has moved them or changed a mass.
    [[nodiscard]] bool AreStill(const std::vector<Body*>& bodies) const;
    // All positions and velocities are finite numbers.
    [[nodiscard]] bool AreFinite() const;
    // The pair that needs the shortest step; none where no two bodies interact, or if it was given
    // up halfway because of `stop`. Goes over all pairs on the caller's thread.
    [[nodiscard]] std::optional<CollidingPair> FastestPair(const StopFlags& stop) const;
    // Metres.
    [[nodiscard]] double Distance(const CollidingPair& pair) const;
    [[nodiscard]] const BodyArrays& Coordinates() const { return coordinates_; }

private:
    BodyRows rows_;
    BodyArrays coordinates_{};
    std::vector<int64> ids_;
};
