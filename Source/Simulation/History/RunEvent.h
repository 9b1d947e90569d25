// What happened to the bodies of a run beside their motion. A plain value.
#pragma once

#include <string>
#include <vector>

#include "Model/Systems/ThreeVector.h"
#include "Platform/Support/SupportDefs.h"

struct RunEvent {
    enum class Kind {
        kMerger,  // one body became part of another
        kEdit,    // somebody changed, added or removed bodies
    };
    // A body as it was.
    struct Before {
        int64 id = 0;
        std::string name;
        double gm = 0.0;       // m3/s2
        double radius = 0.0;   // m
        ThreeVector position;  // m
        ThreeVector velocity;  // m/s
    };

    Kind kind = Kind::kEdit;
    double time = 0.0;  // s
    // The bodies that it happened to; of a merger the survivor and the one that it absorbed.
    std::vector<Before> before;
    std::string name;  // of a merger: what it has made
};
