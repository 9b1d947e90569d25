// What the command line asks for. A plain value.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class ProgramResources;

// Where the picture of a run is looked at from. A plain value.
struct CameraChoice {
    double azimuth = 0.0;            // rad
    double elevation = 0.0;          // rad
    std::optional<double> distance;  // m; none: all orbits are seen
};

struct Options {
    // Steps of a run without any limit: a look at the document.
    static constexpr int64 kDefaultSteps = 1000;

    std::optional<double> checkpoint;     // s of real time between two of them
    std::optional<std::string> resume;    // a checkpoint, in place of a document
    std::optional<std::string> document;  // none: the new-simulation template
    std::optional<int64> steps;           // 0: no run
    std::optional<double> duration;       // s; negative: back in time
    std::optional<std::string> until;     // UntilText.h
    std::vector<double> at;               // s, the document's times of states to write
    bool stepTimes = false;               // states are written where steps end
    std::optional<std::string> events;
    std::optional<double> escapeDistance;  // m
    std::optional<std::string> csv;
    std::optional<int64> every;  // none: all, or as the run began
    std::optional<std::string> save;
    std::optional<std::string> exported;  // the bodies at the end
    std::optional<std::string> png;
    int32 width = 1200;  // pixels of the picture
    int32 height = 900;
    int32 axis = 3;                      // looked along: 1, 2, 3 for x, y, z
    double scale = 0.0;                  // pixels per metre; 0: the picture shows all that happened
    std::optional<CameraChoice> camera;  // none: along an axis
    std::optional<std::string> frames;   // a folder
    int32 framesPerSecond = 25;
    std::optional<double> pace;        // s of the simulation in a second of the film
    bool overwrites = false;           // frames that are there
    std::vector<std::string> imports;  // files of bodies
    double missingGM = -1.0;         // m3/s2, of bodies whose file tells none; negative: not given
    std::vector<std::string> edits;  // "SYSTEM.FIELD=VALUE UNIT", in order
    std::optional<int32> onCollision;  // of EpochLimits.h; none: what the epoch says
    std::vector<std::string> sweeps;   // SweepAxis.h
    std::optional<std::string> sweepFile;
    std::vector<std::string> bodies;  // whose columns a sweep has
    bool epochs = false;
    bool elements = false;
    bool chaos = false;
    std::optional<double> cutoff;
    std::optional<int32> order;
    std::optional<int32> threads;
    bool json = false;
    bool dump = false;
    bool jsonLines = false;  // orders come from standard input
    bool quiet = false;
    bool help = false;
    bool version = false;

    [[nodiscard]] bool IsSweep() const { return !sweeps.empty() || sweepFile; }
    // Beside the document that is saved.
    [[nodiscard]] std::string CheckpointPath() const { return *save + ".checkpoint"; }
    // A listing alone, and 0 steps, run nothing.
    [[nodiscard]] bool WantsRun() const {
        if (resume) return true;
        return steps ? *steps > 0 : duration || until || !at.empty() || !(epochs || elements);
    }
};

// Reads the arguments that follow the program's name. The answer is empty, or says what is wrong
// with them. Nothing after an argument that asks for help or the version is looked at.
[[nodiscard]] std::optional<std::string> ParseOptions(
    const std::vector<std::string_view>& arguments, const ProgramResources& resources,
    Options* options);
