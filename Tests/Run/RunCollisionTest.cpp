// What a run does when bodies touch.
#include <cmath>

#include "ProgramRun.h"
#include "RunFixture.h"
#include "SampleDocument.h"

namespace {

class RunCollision : public RunFixture {
protected:
    // A body of radius 0.05 with GM 1.
    static void Add(Epoch* epoch, int64 id, ThreeVector position, ThreeVector velocity = {}) {
        const std::string name = "b" + std::to_string(id);
        std::unique_ptr<Body> body = MakeBody(name.c_str(), id, 1.0, position, velocity);
        body->SetRadius(0.05);
        epoch->RootSystem()->AddChild(body.release());
    }
    // Many bodies at rest in a ball, which fall into one another.
    static std::unique_ptr<Epoch> Collapse(int64 count) {
        auto epoch = std::make_unique<Epoch>();
        epoch->SetName("Collapse");
        uint64 state = 1;
        const auto next = [&state] {
            state = state * 6364136223846793005u + 1442695040888963407u;
            return static_cast<double>(state >> 11) / 0x1p52 - 1.0;
        };
        for (int64 id = 0; id < count; id++)
            Add(epoch.get(), id, {2.0 * next(), 2.0 * next(), 2.0 * next()});
        return epoch;
    }
    static double Number(const std::string& json, const char* name) {
        return std::stod(Member(json, name));
    }
};

TEST_F(RunCollision, BodiesMergeAndTheRunGoesOnToItsLimit) {
    Epoch epoch;
    epoch.SetName("Start");
    Add(&epoch, 0, {0, 0, 0});
    Add(&epoch, 1, {1, 0, 0});
    Add(&epoch, 2, {50, 0, 0}, {0, 0.24, 0});  // in orbit about them
    const std::string document = PutDocument("document", epoch);
    const Outcome outcome = RunProgram({"-n", "3000", "--cutoff", "1e-6", "--csv", Path("csv"),
                                        "--json", "-o", Path("saved"), document});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("\"b1\" merges into \"b0\""), std::string::npos) << outcome.err;
    EXPECT_EQ(Member(outcome.out, "mergers"), "1");
    EXPECT_EQ(Member(outcome.out, "steps"), "3000");
    EXPECT_EQ(Member(outcome.out, "bodies"), "2");
    EXPECT_LT(std::fabs(Number(outcome.out, "relative_energy_error")), 1e-3);

    // Every report once: three bodies before the merger, two after it.
    const std::vector<CsvRow> rows = ParseCsv(Get(Path("csv")));
    std::vector<std::size_t> counts(3001);
    for (const CsvRow& row : rows)
        counts.at(static_cast<std::size_t>(row.report))++;
    EXPECT_EQ(counts.front(), 3u);
    EXPECT_EQ(counts.back(), 2u);
    EXPECT_TRUE(std::is_sorted(counts.rbegin(), counts.rend()));
    EXPECT_EQ(rows.back().name, "b2");
    EXPECT_EQ(rows[rows.size() - 2].name, "b0 & b1");

    SimulationDocument saved(nullptr);
    ASSERT_FALSE(saved.Load(GetRecord(Path("saved"))).Failed());
    EXPECT_EQ(saved.Portal()->BodiesInMassOrder().size(), 2u);
    EXPECT_EQ(saved.Root()->ChildAt(0)->RootSystem()->CountChildren(), 3);
}

TEST_F(RunCollision, CollapseOfManyBodiesKeepsMassAndMomentumOnAnyNumberOfThreads) {
    const std::unique_ptr<Epoch> start = Collapse(300);
    const std::string document = PutDocument("document", *start);
    std::string digest;
    for (const char* threads : {"1", "2"}) {
        const Outcome outcome = RunProgram({"-n", "20000", "--threads", threads, "--json",
                                            "--cutoff", "1e-6", "-o", Path("saved"), document});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_GE(Number(outcome.out, "mergers"), 100.0);
        EXPECT_EQ(digest.empty() ? Member(outcome.out, "sha256") : digest,
                  Member(outcome.out, "sha256"));
        digest = Member(outcome.out, "sha256");

        SimulationDocument saved(nullptr);
        ASSERT_FALSE(saved.Load(GetRecord(Path("saved"))).Failed());
        const MassSystem* root = saved.Portal()->FocusEpoch()->RootSystem();
        EXPECT_DOUBLE_EQ(root->M(), 300.0);
        // The bodies started at rest and fell at speeds of about 10.
        const ThreeVector v = root->Velocity();
        EXPECT_LT(std::hypot(v.x, v.y, v.z), 1e-12);
    }
}

}  // namespace
