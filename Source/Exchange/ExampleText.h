// What the text of an example says, before anything is computed from it: plain values in SI units
// (masses as GM in m3/s2), each system with the line on which it begins.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Exchange/KeplerOrbit.h"
#include "Model/Epochs/EpochLimits.h"
#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"

// The factors of the units in which a system's quantities are shown.
struct ExampleUnits {
    double position = 0.0;
    double speed = 0.0;
    double mass = 0.0;
    double radius = 0.0;
};

struct ExampleOrbit {
    std::string centre;  // a system of the same group
    KeplerOrbit elements;
};

struct ExampleSystem {
    enum class Kind { kBody, kGroup, kCluster, kBelt };

    Kind kind = Kind::kBody;
    int line = 0;
    std::string name;
    double mass = 0.0;    // of a body, or of a whole cluster
    double radius = 0.0;  // of a body, or of each star
    std::optional<ThreeVector> position;
    std::optional<ThreeVector> velocity;
    std::optional<ExampleOrbit> orbit;
    std::string relativeTo;  // empty: absolute
    rgb_color trail{0, 0, 0, 255};
    rgb_color disc{0, 0, 0, 255};
    bool trailOn = true;
    bool discOn = true;
    ExampleUnits shownIn;
    std::vector<ExampleSystem> members;  // of a group
    int32 count = 0;                     // of a cluster's stars or a belt's bodies
    uint64 seed = 1;                     // of either
    double length = 0.0;                 // of a cluster, as the next one
    double speeds = 1.0;                 // parts of those that keep it in balance
    double outer = 0.0;                  // semi-major axis of a belt's outermost orbit
};

// A system that a statement about the whole names.
struct ExampleMention {
    std::string name;  // empty: none
    int line = 0;
};

// Where the display shows space from, rad.
struct ExampleCamera {
    double azimuth = 0.0;
    double elevation = 0.0;
};

struct ExampleText {
    std::string title;             // may be empty
    std::vector<std::string> see;  // what one should see, line by line
    std::string source;            // where the numbers come from
    std::string epochName;
    double time = 0.0;
    double timeUnit = 0.0;
    double cutoff = kDefaultCutoff;
    int32 order = kDefaultOrder;
    bool centred = true;   // the centre of mass is put at the origin when a run starts
    ExampleMention focus;  // none: the first system
    ExampleMention followed;
    ExampleMention turnsAbout;  // the body from which the next one stays in one direction
    ExampleMention turnsWith;
    std::optional<ExampleCamera> camera;  // none: a projection
    bool names = true;                    // are shown
    double thumbnail = 0.0;  // s that the run takes whose picture the gallery shows; 0: none
    double picture = 0.0;  // the length that the display shows across, 0: the program's own choice
    int32 axis = 3;        // the axis that is looked along: 1, 2, 3 for x, y, z
    ExampleUnits shownIn;
    std::vector<ExampleSystem> systems;
};
