// The runner on large documents, and what its cutoff does to the energy. All rows run the real
// program or read a real file.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Benchmarks/TemporaryFolder.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Run/ProgramRun.h"

namespace {

void AddBody(Epoch* epoch, const char* name, int64 id, double gm, ThreeVector position,
             ThreeVector velocity) {
    auto body = std::make_unique<Body>(name, id, rgb_color{}, rgb_color{}, kOriginID);
    body->SetM(gm);
    body->SetPosition(position);
    body->SetVelocity(velocity);
    epoch->RootSystem()->AddChild(body.release());
}

void PutDocument(const Epoch& epoch, const std::string& path) {
    BMessage archive;
    BMessage record;
    if (epoch.Archive(&archive, true) != B_OK || record.AddMessage("Epochs", &archive) != B_OK ||
        SimulationFile::Write(path, record).Failed()) {
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
        std::exit(1);
    }
}

// A cloud of bodies of which the first `massive` pull on the others.
void PutCloud(int32 count, int32 massive, const std::string& path) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> unit(-1, 1);
    const auto vector = [&](double scale) {
        return ThreeVector{scale * unit(random), scale * unit(random), scale * unit(random)};
    };
    Epoch epoch;
    for (int32 i = 0; i < count; i++)
        AddBody(&epoch, ("Body " + std::to_string(i)).c_str(), i, i < massive ? 1e15 : 0.0,
                vector(1e12), vector(1e4));
    PutDocument(epoch, path);
}

// Sun and outer planets on 5 September 1994, from Hairer, Lubich and Wanner, Geometric Numerical
// Integration, I.2.4: masses of the Sun with the inner planets, AU, AU per day.
void PutOuterPlanets(const std::string& path) {
    constexpr double kAU = 1.495978707e11;
    constexpr double kSpeed = kAU / 86400.0;
    constexpr double kSunGM = 2.95912208286e-4 * kAU * kSpeed * kSpeed;
    const struct {
        const char* name;
        double mass;
        ThreeVector position;
        ThreeVector velocity;
    } bodies[] = {
        {"Sun", 1.00000597682, {0, 0, 0}, {0, 0, 0}},
        {"Jupiter",
         0.000954786104043,
         {-3.5023653, -3.8169847, -1.5507963},
         {0.00565429, -0.00412490, -0.00190589}},
        {"Saturn",
         0.000285583733151,
         {9.0755314, -3.0458353, -1.6483708},
         {0.00168318, 0.00483525, 0.00192462}},
        {"Uranus",
         0.0000437273164546,
         {8.3101420, -16.2901086, -7.2521278},
         {0.00354178, 0.00137102, 0.00055029}},
        {"Neptune",
         0.0000517759138449,
         {11.4707666, -25.7294829, -10.8169456},
         {0.00288930, 0.00114527, 0.00039677}},
        {"Pluto",
         1.0 / 1.3e8,
         {-15.5387357, -25.2225594, -3.1902382},
         {0.00276725, -0.00170702, -0.00136504}},
    };
    Epoch epoch;
    int64 id = 0;
    for (const auto& body : bodies)
        AddBody(&epoch, body.name, id++, body.mass * kSunGM, kAU * body.position,
                kSpeed * body.velocity);
    PutDocument(epoch, path);
}

// The number that the program's summary gives for a member, NaN when it failed.
double RunAndTell(const std::vector<std::string>& arguments, const std::string& member) {
    const Outcome outcome = RunProgram(arguments);
    const std::string key = '"' + member + "\":";
    const std::size_t at = outcome.out.find(key);
    if (outcome.status != 0 || at == std::string::npos) return std::nan("");
    return std::strtod(outcome.out.c_str() + at + key.size(), nullptr);
}

double PeakMegabytes(const std::vector<std::string>& arguments) {
    const Outcome outcome = RunProgram(arguments);
    return outcome.status == 0 ? static_cast<double>(outcome.peakMemory) / 1024 : std::nan("");
}

// Of a process that does only this, and of what this process has at the moment; NaN when it failed.
double PeakMegabytesOf(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    return status == 0 ? static_cast<double>(usage.ru_maxrss) / 1024 : std::nan("");
}

void BenchLargeDocuments(BenchTable* table, const TemporaryFolder& folder) {
    const std::string massive = folder.File("massive");
    const std::string large = folder.File("large");
    // In a process of its own, whose memory does not stay here.
    PeakMegabytesOf([&] {
        PutCloud(5000, 5000, massive);
        PutCloud(100000, 1, large);
    });
    const auto read = [&large] {
        BMessage record;
        SimulationDocument document(nullptr);
        if (SimulationFile::Read(large, &record).Failed() || document.Load(record).Failed())
            std::abort();
    };
    table->AddAtMost("reading a document of 100000 bodies, peak memory", 400, PeakMegabytesOf(read),
                     "MB");
    table->AddAtMost("reading a document of 100000 bodies", 1, Measure({read}, 1, 5)[0].median,
                     "s");
    table->AddAtMost("orvek-run, 5000 massive bodies, 30 steps saved, peak memory", 150,
                     PeakMegabytes({"-q", "-n", "30", "-o", folder.File("saved"), massive}), "MB");
}

void BenchCutoffs(BenchTable* table, const TemporaryFolder& folder) {
    const std::string planets = folder.File("planets");
    PutOuterPlanets(planets);
    for (const char* cutoff : {"1e-7", "1e-8", "1e-9", "1e-10", "1e-11", "1e-12", "1e-13"}) {
        const double error = RunAndTell({"--json", "--for", "1000 yr", "--cutoff", cutoff, planets},
                                        "relative_energy_error");
        table->AddFigure(std::string("energy error, outer planets, 1000 years, cutoff ") + cutoff,
                         std::fabs(error), "");
    }
}

}  // namespace

void BenchRuns(BenchTable* table) {
    const TemporaryFolder folder;
    BenchLargeDocuments(table, folder);
    BenchCutoffs(table, folder);
}
