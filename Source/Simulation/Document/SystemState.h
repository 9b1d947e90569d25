// The bodies of the focus epoch at one moment, in mass order (heavier first, equal masses by
// ascending identifier), in SI units; masses are GM in m3/s2. A plain value.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"

class EpochPortal;

struct SystemState {
    double time = 0.0;  // s
    std::vector<int64> ids;
    std::vector<std::string> names;
    std::vector<double> gm;          // m3/s2
    std::vector<double> positions;   // m, x y z of each body
    std::vector<double> velocities;  // m/s, likewise

    [[nodiscard]] std::size_t CountBodies() const { return ids.size(); }
    [[nodiscard]] ThreeVector Position(std::size_t body) const { return VectorAt(positions, body); }
    [[nodiscard]] ThreeVector Velocity(std::size_t body) const {
        return VectorAt(velocities, body);
    }
    // Those that pull on others; they come first.
    [[nodiscard]] std::size_t CountMassive() const;
    // The name of the body with this identifier, empty if there is none.
    [[nodiscard]] std::string NameOf(int64 id) const;

private:
    static ThreeVector VectorAt(const std::vector<double>& triples, std::size_t body) {
        return {triples[3 * body], triples[3 * body + 1], triples[3 * body + 2]};
    }
};

// The caller holds the portal's lock.
[[nodiscard]] SystemState StateOf(const EpochPortal& portal);
// Takes the portal's read lock.
[[nodiscard]] SystemState TakeState(EpochPortal* portal);
