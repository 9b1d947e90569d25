// The bodies as they were when a hand took hold of one, and the frame that it sees them in. Plain
// values in SI units, as the document has them; bodies in mass order.
#pragma once

#include <vector>

#include "Displays/Trajectories/TrajectoryCache.h"
#include "Model/Epochs/EpochLimits.h"
#include "Model/Systems/ThreeVector.h"
#include "Model/Units/UnitTable.h"

class AbEpoch;
class Body;

struct HandBody {
    int64 id = kNoSystemID;
    double gm = 0.0;
    double radius = 0.0;
    ThreeVector position;
    ThreeVector velocity;
    double positionUval = POSITION_UVAL_PREF;  // the units that the user reads it in
    double speedUval = SPEED_UVAL_PREF;

    bool operator==(const HandBody&) const = default;
};

struct HandSystem {
    const AbEpoch* epoch = nullptr;  // by its address alone: is it still the same?
    std::vector<HandBody> bodies;
    std::vector<TrajectoryCache::Member> reference;  // what stands still
    ThreeVector origin;                              // where that is
    ThreeVector drift;                               // and how it moves

    bool operator==(const HandSystem&) const = default;

    [[nodiscard]] bool HasSameBodies(const HandSystem& other) const;
    // -1 if there is none such.
    [[nodiscard]] int32 IndexOf(int64 id) const;
    // The body that another one at this place goes about: of those in whose sphere of influence it
    // lies, the one whose sphere is smallest, or else the heaviest; null where nothing has mass.
    [[nodiscard]] const HandBody* NeighbourOf(const ThreeVector& place, int64 but) const;
    // The velocity nearest to the body's own that keeps it on a circle about its neighbour; its own
    // where there is none.
    [[nodiscard]] ThreeVector CircularVelocity(const HandBody& body) const;
    // Of its way about the neighbour, s; where it is not bound, of a circle of that radius; 0 where
    // there is no neighbour.
    [[nodiscard]] double PeriodOf(const HandBody& body) const;
};

// `followed` stands still, if it is there. The caller holds the model's read lock.
[[nodiscard]] HandSystem ReadHandSystem(const AbEpoch& epoch, const std::vector<Body*>& bodies,
                                        int64 followed);
