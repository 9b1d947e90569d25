// What there is to be seen in space, before anybody looks at it: bodies, trails, a moment. Plain
// values in SI units; places are relative to what stands still.
#pragma once

#include <string>
#include <vector>

#include "Displays/Trajectories/KeptTrails.h"
#include "Model/Epochs/EpochLimits.h"
#include "Model/Systems/ThreeVector.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

class Body;

struct SpaceBody {
    int64 id = 0;
    std::string name;
    ThreeVector position;  // m
    ThreeVector velocity;  // m/s
    double gm = 0.0;       // m3/s2
    double radius = 0.0;   // m
    rgb_color color{};
    rgb_color trailColor{};
    bool isShown = true;

    // So heavy that it shines.
    [[nodiscard]] bool IsStar() const;
};

struct SpaceScene {
    std::vector<SpaceBody> bodies;  // in mass order
    std::vector<KeptTrails::Trail> trails;
    std::vector<bool> whole;     // of each trail, once it was looked for: there is no gap in it
    double time = 0.0;           // s
    int64 edited = kNoSystemID;  // that body has a ring around it
    double lengthUnit = POSITION_UVAL_PREF;  // m, in which the user reads places

    // Takes over bodies in mass order. The caller holds the model's read lock.
    void TakeBodies(const std::vector<Body*>& from);
    // After the trails have become others.
    void FindWholeTrails();
    // What has to be in a picture that shows all: bodies, trails, and the ways that bound bodies
    // will take.
    [[nodiscard]] std::vector<ThreeVector> Places() const;
    // Where the others' light comes from: a star, or else the heaviest; -1 without bodies.
    [[nodiscard]] int32 LightSource() const { return bodies.empty() ? -1 : 0; }
};
