// Documents of very many systems: reading them in any order, what that takes, and a signal
// meanwhile. All rows run the real program or read a real file.
#include <sys/wait.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"
#include "Benchmarks/Stopwatch.h"
#include "Benchmarks/TemporaryFolder.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/CompositeSystem.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Tests/Run/ProgramRun.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int64 kBodies = 100'000;
constexpr int64 kGroups = 200'000;

std::unique_ptr<Body> MakeGrain(int64 id) {
    auto body = std::make_unique<Body>("Grain", id, rgb_color{}, rgb_color{}, kOriginID);
    body->SetPosition({1e12 + 1e8 * static_cast<double>(id), 1e9, 0.0});
    return body;
}

// With the bodies or groups of the only epoch the other way round, if they are to fall.
void Put(const Epoch& epoch, bool falls, const std::string& path) {
    BMessage archive;
    BMessage root;
    BMessage record;
    bool isDone = epoch.Archive(&archive, true) == B_OK;
    if (falls) {
        BMessage fallen;
        BMessage child;
        int32 count = 0;
        isDone = isDone && archive.FindMessage("Root", &root) == B_OK &&
                 root.GetInfo("Bodies", nullptr, &count) == B_OK;
        for (int32 i = count - 1; i >= 0 && isDone; i--)
            isDone = root.FindMessage("Bodies", i, &child) == B_OK &&
                     fallen.AddMessage("Bodies", std::move(child)) == B_OK;
        root.RemoveName("Bodies");
        for (int32 i = 0; i < count && isDone; i++)
            isDone = fallen.FindMessage("Bodies", i, &child) == B_OK &&
                     root.AddMessage("Bodies", std::move(child)) == B_OK;
        archive.RemoveName("Root");
        isDone = isDone && archive.AddMessage("Root", &root) == B_OK;
    }
    if (isDone && record.AddMessage("Epochs", &archive) == B_OK &&
        !SimulationFile::Write(path, record).Failed())
        return;
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    std::exit(1);
}

void BenchBodies(BenchTable* table, const TemporaryFolder& folder) {
    Epoch epoch;
    for (int64 i = 0; i < kBodies; i++)
        epoch.RootSystem()->AddChild(MakeGrain(i).release());
    const std::string path = folder.File("bodies");
    Put(epoch, true, path);
    const auto read = [&path] {
        BMessage record;
        SimulationDocument document(nullptr);
        if (SimulationFile::Read(path, &record).Failed() || document.Load(record).Failed())
            std::abort();
    };
    table->AddAtMost("reading 100000 bodies in falling order of identifiers", 1,
                     Measure({read}, 1, 5)[0].median, "s");
    const Outcome outcome = RunProgram({"-q", "-n", "1", "-o", folder.File("saved"), path});
    const double file = static_cast<double>(std::filesystem::file_size(path));
    table->AddAtMost("orvek-run, 100000 bodies, a step saved, peak memory to file", 8,
                     outcome.status == 0 ? 1024.0 * static_cast<double>(outcome.peakMemory) / file
                                         : std::nan(""),
                     "times");
}

void BenchSignal(BenchTable* table, const TemporaryFolder& folder) {
    Epoch epoch;
    for (int64 i = 0; i < kGroups; i++) {
        auto group =
            std::make_unique<CompositeSystem>("Group", 2 * i, rgb_color{}, rgb_color{}, kOriginID);
        group->AddChild(MakeGrain(2 * i + 1).release());
        epoch.RootSystem()->AddChild(group.release());
    }
    const std::string path = folder.File("groups");
    Put(epoch, false, path);
    const auto start = Clock::now();
    const bool isRead = RunProgram({"-q", "-n", "0", path}).status == 0;
    const auto whole = Clock::now() - start;
    double longest = isRead ? 0.0 : std::nan("");
    for (int part = 1; part < 8; part++)
        RunProgram({"-q", "-n", "100000000", path}, {.meanwhile = [&](pid_t program) {
                       std::this_thread::sleep_for(whole * part / 8);
                       const auto sent = Clock::now();
                       kill(program, SIGTERM);
                       siginfo_t info{};
                       waitid(P_PID, static_cast<id_t>(program), &info, WEXITED | WNOWAIT);
                       const std::chrono::duration<double> took = Clock::now() - sent;
                       longest = std::fmax(longest, took.count());
                   }});
    table->AddAtMost("orvek-run, SIGTERM while 200000 groups are read, until it has ended", 0.5,
                     longest, "s");
}

}  // namespace

void BenchDocuments(BenchTable* table) {
    const TemporaryFolder folder;
    BenchBodies(table, folder);
    BenchSignal(table, folder);
}
