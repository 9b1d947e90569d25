// The runner on large documents, and what its cutoff does to the energy. All rows run the real
// program or read a real file.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
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
#include "Tests/Calculation/Series/SeriesFixtures.h"
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

void PutOuterPlanets(const std::string& path) {
    Epoch epoch;
    int64 id = 0;
    for (const auto& [position, velocity, gm] : OuterPlanets()) {
        AddBody(&epoch, ("Body " + std::to_string(id)).c_str(), id, gm, position, velocity);
        id++;
    }
    PutDocument(epoch, path);
}

// The number that a summary gives for a member, NaN when the program failed.
double NumberIn(const Outcome& outcome, const std::string& member) {
    const std::string key = '"' + member + "\":";
    const std::size_t at = outcome.out.find(key);
    if (outcome.status != 0 || at == std::string::npos) return std::nan("");
    return std::strtod(outcome.out.c_str() + at + key.size(), nullptr);
}

double RunAndTell(const std::vector<std::string>& arguments, const std::string& member) {
    return NumberIn(RunProgram(arguments), member);
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
    const std::string massless = folder.File("massless");
    // In a process of its own, whose memory does not stay here.
    PeakMegabytesOf([&] {
        PutCloud(5000, 5000, massive);
        PutCloud(100000, 1, large);
        PutCloud(100010, 10, massless);
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
    table->AddAtMost("orvek-run, order 16, 10 massive bodies and 100000 others, peak memory", 400,
                     PeakMegabytes({"-q", "-n", "3", "--order", "16", massless}), "MB");
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

#ifdef ORVEK_RUN_MPI
// The least time of two threads against that of two ranks of one thread each.
void BenchRanks(BenchTable* table, const std::string& document, int32 bodies, const char* order,
                const char* steps, double least) {
    constexpr int kRuns = 3;
    double threads = HUGE_VAL;
    double ranks = HUGE_VAL;
    std::vector<std::string> run = {"--json", "-q", "-n", steps, "--order", order, document};
    run.insert(run.end(), {"--threads", "2"});
    for (int i = 0; i < kRuns; i++) {
        run.back() = "2";
        threads = std::min(threads, RunAndTell(run, "seconds"));
        run.back() = "1";
        std::vector<std::string> shared = {"-n", "2", ORVEK_RUN_MPI};
        shared.insert(shared.end(), run.begin(), run.end());
        ranks = std::min(ranks, NumberIn(RunOther("mpirun", shared), "seconds"));
    }
    table->AddAtLeast("order " + std::string(order) + ", two ranks against two threads, " +
                          std::to_string(bodies) + " bodies",
                      least, threads < HUGE_VAL ? threads / ranks : std::nan(""), "x");
}
#endif

}  // namespace

void BenchRuns(BenchTable* table) {
    const TemporaryFolder folder;
    BenchLargeDocuments(table, folder);
    BenchCutoffs(table, folder);
}

#ifdef ORVEK_RUN_MPI
void BenchRanks(BenchTable* table) {
    const TemporaryFolder folder;
    const std::string document = folder.File("cloud");
    setenv("OMPI_ALLOW_RUN_AS_ROOT", "1", 1);
    setenv("OMPI_ALLOW_RUN_AS_ROOT_CONFIRM", "1", 1);
    PutCloud(1000, 1000, document);
    BenchRanks(table, document, 1000, "4", "400", 0.75);
    BenchRanks(table, document, 1000, "16", "20", 0.75);
    PutCloud(5000, 5000, document);
    BenchRanks(table, document, 5000, "4", "20", 0.85);
    BenchRanks(table, document, 5000, "16", "4", 0.85);
}
#endif
