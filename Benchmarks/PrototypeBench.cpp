// The integrator of high order against the sketch that it was written after, which is compiled as
// quick as the compiler can make it for this machine alone: both run the same systems to the same
// times, in turn, and the least time of each counts. Only where the build is told of the sketch
// (ORVEK_PROTOTYPE).
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/TemporaryFolder.h"
#include "Tests/Calculation/Series/SeriesFixtures.h"

#ifdef ORVEK_PROTOTYPE

namespace {

constexpr int32 kOrder = 16;
constexpr double kTolerance = 1e-16;
// Of it terms are left out by body, as far as a body can have it.
constexpr const char* kCutoff = "1.25e-17";
constexpr int32 kRounds = 7;
constexpr double kSpeed = 0.8;

double ProcessorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// The first number that the program prints after "cpu=", NaN when it failed.
double RunSketch(const std::string& program, const std::string& arguments) {
    const std::string command =
        std::string(ORVEK_PROTOTYPE_PROGRAMS) + "/" + program + " " + arguments;
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return std::nan("");
    std::string text;
    char buffer[4096];
    while (std::fgets(buffer, sizeof buffer, pipe) != nullptr)
        text += buffer;
    const std::size_t at = text.find("cpu=");
    if (pclose(pipe) != 0 || at == std::string::npos) return std::nan("");
    return std::strtod(text.c_str() + at + 4, nullptr);
}

// The files of the sketch: the number of bodies; GM, position, velocity and radius of each.
PointSystem ReadState(const std::string& path) {
    std::ifstream file(path);
    std::size_t count = 0;
    file >> count;
    PointSystem system(count);
    double radius = 0.0;
    for (auto& [position, velocity, gm] : system)
        file >> gm >> position.x >> position.y >> position.z >> velocity.x >> velocity.y >>
            velocity.z >> radius;
    if (!file) std::abort();
    return system;
}

void WriteState(const PointSystem& system, const std::string& path) {
    std::FILE* const file = std::fopen(path.c_str(), "w");
    if (file == nullptr) std::abort();
    std::fprintf(file, "%zu\n", system.size());
    for (const auto& [position, velocity, gm] : system)
        std::fprintf(file, "%.17g %.17g %.17g %.17g %.17g %.17g %.17g 0\n", gm, position.x,
                     position.y, position.z, velocity.x, velocity.y, velocity.z);
    std::fclose(file);
}

void Start(const PointSystem& system, SeriesStepper* stepper) {
    Load(system, stepper, kOrder);
    stepper->Start(kTolerance, 0.0);
}

double Run(const PointSystem& system, double time) {
    SeriesStepper stepper(1);
    const double begin = ProcessorSeconds();
    Start(system, &stepper);
    if (RunTo(&stepper, time).empty()) std::abort();
    return ProcessorSeconds() - begin;
}

// Where so many steps end.
double TimeOf(const PointSystem& system, int32 steps) {
    SeriesStepper stepper(1);
    Start(system, &stepper);
    StopFlags stop;
    stop.pauseCount = 0;
    for (int32 i = 0; i < steps; i++)
        if (stepper.MakeStep(stop) != SeriesStepper::Result::kDone) std::abort();
    return stepper.Step().End().high;
}

void BenchSystem(BenchTable* table, const std::string& what, const std::string& path, int32 steps) {
    const PointSystem system = ReadState(path);
    const bool isRing = system.size() <= kMaxInRing;
    const double time = TimeOf(system, steps);
    char arguments[64];
    std::snprintf(arguments, sizeof arguments, " %.17g %d %g b", time, kOrder, kTolerance);
    const std::string call =
        path + arguments + (isRing ? " 1" : std::string(" 1 100000000 1 ") + kCutoff);
    double ours = HUGE_VAL;
    double sketch = HUGE_VAL;
    for (int32 round = 0; round < kRounds; round++) {
        ours = std::min(ours, Run(system, time));
        sketch = std::min(sketch, RunSketch(isRing ? "small" : "tiles2", call));
    }
    table->AddFigure("order 16, prototype, " + what, 1e6 * sketch / steps, "us a step");
    table->AddAtLeast("order 16 against the prototype, " + what, kSpeed, sketch / ours, "x");
}

}  // namespace

void BenchPrototype(BenchTable* table) {
    const std::string states = std::string(ORVEK_PROTOTYPE) + "/states/";
    const TemporaryFolder folder;
    WriteState(KeplerPair(0.999), folder.File("kepler"));
    BenchSystem(table, "outer planets", states + "outer-planets.txt", 20'000);
    BenchSystem(table, "figure eight", states + "figure-eight.txt", 40'000);
    BenchSystem(table, "Pythagorean", states + "pythagorean.txt", 3'000);
    BenchSystem(table, "Kepler, e = 0.999", folder.File("kepler"), 40'000);
    BenchSystem(table, "Plummer, 100 bodies", states + "cluster100.txt", 300);
    BenchSystem(table, "Plummer, 1000 bodies", states + "cluster.txt", 5);
}

#endif
