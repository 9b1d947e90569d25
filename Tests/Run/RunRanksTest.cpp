// The program as ranks that share the work: the same bits on any number of them.
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Tests/Run/ProgramRun.h"
#include "Tests/Run/RunFixture.h"
#include "Tests/Simulation/Document/SampleDocument.h"

#ifdef ORVEK_RUN_MPI

namespace {

using Arguments = std::vector<std::string>;

class RunRanks : public RunFixture {
protected:
    // Bodies in a ball, some of them massless; more pairs than what is worth sharing.
    std::string PutCluster(int32 massive, int32 massless) const {
        Epoch epoch;
        uint64 state = 12345;
        const auto random = [&state] {
            state = state * 6364136223846793005u + 1442695040888963407u;
            return static_cast<double>(state >> 11) * 0x1p-53 - 0.5;
        };
        for (int64 id = 0; id < massive + massless; id++) {
            const std::string name = 'b' + std::to_string(id);
            const double gm = id < massive ? 1.0 + random() : 0.0;
            const ThreeVector place{1e3 * random(), 1e3 * random(), 1e3 * random()};
            const ThreeVector velocity{random(), random(), random()};
            auto body = MakeBody(name.c_str(), id, gm, place, velocity);
            body->SetRadius(1e-9);
            epoch.RootSystem()->AddChild(body.release());
        }
        return PutDocument("cluster", epoch);
    }
    // More ranks than processors; root may, too.
    static Outcome RunAs(int32 ranks, const Arguments& arguments, const RunSetup& setup = {},
                         const char* program = ORVEK_RUN_MPI) {
        Arguments all = {"--oversubscribe",
                         "--mca",
                         "mpi_yield_when_idle",
                         "1",
                         "--mca",
                         "btl_vader_single_copy_mechanism",
                         "none",
                         "-n",
                         std::to_string(ranks),
                         program};
        all.insert(all.end(), arguments.begin(), arguments.end());
        setenv("OMPI_ALLOW_RUN_AS_ROOT", "1", 1);
        setenv("OMPI_ALLOW_RUN_AS_ROOT_CONFIRM", "1", 1);
        return RunOther("mpirun", all, setup);
    }
    // One that mpirun has started, when there are so many.
    static void KillLastOf(pid_t mpirun, std::size_t ranks) {
        const std::string file =
            "/proc/" + std::to_string(mpirun) + "/task/" + std::to_string(mpirun) + "/children";
        std::vector<pid_t> children;
        std::ifstream in(file);
        for (pid_t child = 0; in >> child;)
            children.push_back(child);
        if (children.size() == ranks) kill(children.back(), SIGKILL);
    }
    static void ExpectSame(const Outcome& one, const Outcome& other) {
        ASSERT_EQ(other.status, 0) << other.err;
        for (const char* member : {"sha256", "steps", "reports", "mergers"})
            EXPECT_EQ(Member(other.out, member), Member(one.out, member)) << member;
    }
};

TEST_F(RunRanks, AnyNumberHasTheBitsOfOneProcess) {
    const std::string document = PutCluster(270, 90);
    const struct {
        const char* order;
        std::vector<int32> ranks;
    } kCases[] = {{"3", {2}}, {"4", {3}}, {"16", {1, 2, 3}}};
    for (const auto& [order, numbers] : kCases) {
        SCOPED_TRACE(order);
        Arguments arguments = {"-n",    "3",      "--order", order,   "--cutoff",
                               "1e-13", "--json", "-q",      document};
        const Outcome alone = RunProgram(arguments);
        ASSERT_EQ(alone.status, 0) << alone.err;
        // On two threads each, too.
        arguments.insert(arguments.end(), {"--threads", numbers.size() > 2 ? "2" : "1"});
        for (const int32 ranks : numbers)
            ExpectSame(alone, RunAs(ranks, arguments));
    }
}

TEST_F(RunRanks, OneThatDiesEndsAllAndItsCheckpointGoesOn) {
    const std::string document = PutCluster(210, 0);
    const std::string saved = Path("saved");
    const Arguments run = {"-n", "120", "--order", "8", "--json", "-q", "-o", saved, document};
    const Outcome whole = RunProgram(run);
    ASSERT_EQ(whole.status, 0) << whole.err;
    Arguments endless = run;
    endless.insert(endless.end(), {"--checkpoint", "0.01s"});
    const Outcome killed =
        RunAs(2, endless, {.meanwhile = [&](pid_t mpirun) {
                  while (!std::filesystem::exists(saved + ".checkpoint") && IsRunning(mpirun)) {
                  }
                  KillLastOf(mpirun, 2);
              }});
    EXPECT_NE(killed.status, 0);
    EXPECT_FALSE(killed.err.empty());
    const Outcome resumed =
        RunAs(3, {"--resume", saved + ".checkpoint", "--json", "-q", "-o", saved});
    ExpectSame(whole, resumed);
}

// What one message cannot hold goes in several.
TEST_F(RunRanks, WhatTheyExchangeArrivesHoweverLongItIs) {
    for (const int32 ranks : {1, 2, 3})
        for (const char* const most : {"2147483647", "4", "1"})
            EXPECT_EQ(RunAs(ranks, {most}, {}, ORVEK_RANKS_CHECK).status, 0) << most;
}

TEST_F(RunRanks, ASweepHasTheSameLinesOnAnyNumber) {
    const std::string document = PutDocument("document", *TestSystem());
    const Arguments sweep = {"--sweep", "Light.v.y=20..30 km/s x 7",
                             "--for",   "1 yr",
                             "--order", "16",
                             "--body",  "Light",
                             "-q",      document};
    const Outcome alone = RunProgram(sweep);
    ASSERT_EQ(alone.status, 0) << alone.err;
    for (const int32 ranks : {1, 3}) {
        const Outcome shared = RunAs(ranks, sweep);
        EXPECT_EQ(shared.status, 0) << shared.err;
        EXPECT_EQ(shared.out, alone.out) << ranks;
    }
    Arguments wrong = sweep;
    wrong[1] = "Light.v.y=20..30 furlongs x 7";
    const Outcome refused = RunAs(2, wrong);
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("unknown unit"), std::string::npos);
}

}  // namespace

#endif
